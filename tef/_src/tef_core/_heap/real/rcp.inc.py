"""The reciprocals by which a significand is brought next to 1."""
from floats import emit
from reciprocals import RECIPROCALS

emit([(r,) for r in RECIPROCALS], "1/(1 + (i + 1/2)/256) in 11 bits")
