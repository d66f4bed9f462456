"""What scripts/bench makes of the measurements: figures, charts and the page."""
