"""The table of x^(2/3)."""
from thirds import emit_powers

emit_powers(2)
