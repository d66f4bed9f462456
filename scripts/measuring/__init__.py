"""The page of accuracy: what is measured, and what it is measured against."""
