"""The inverse of erfc y by rows of -ln y."""
from floats import emit
from inverse_erf import rows_in_log

emit(rows_in_log(1, 11),
     "L, the value at e^-L: high, low part; (value at e^-(L + r) - value)/r by powers of r")
