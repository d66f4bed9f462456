"""The instruction reference: the entries in docs/instructions, their checks and their pages."""
