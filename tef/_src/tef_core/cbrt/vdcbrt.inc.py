"""The table of x^(1/3)."""
from thirds import emit_powers

emit_powers(1)
