"""The launcher of the practice Mac."""
