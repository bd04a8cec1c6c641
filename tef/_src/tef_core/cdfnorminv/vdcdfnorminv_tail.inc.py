"""The inverse normal distribution, its sign turned, by rows of -ln 2 p."""
import mpmath
from floats import emit
from inverse_erf import rows_in_log

emit(rows_in_log(mpmath.sqrt(2), 11),
     "L, the value where 2 p = e^-L: high, low part; (value at e^-(L + r) - value)/r by powers of r")
