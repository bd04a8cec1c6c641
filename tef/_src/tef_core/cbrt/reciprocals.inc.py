"""1/c for the middles c of 32 intervals of the mantissa."""
from floats import emit, rounded
from thirds import middle

emit([[rounded(1 / middle(interval))] for interval in range(32)], "1/c")
