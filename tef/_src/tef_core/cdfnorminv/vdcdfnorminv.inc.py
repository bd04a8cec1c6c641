"""The inverse normal distribution, its sign turned, by rows of y = 2 p from 2^-54 to 1/2, and of 1 - y from 0 to 1/2, for HA."""
import mpmath
from floats import emit
from inverse_erf import rows_in_y

emit(rows_in_y(mpmath.sqrt(2), mpmath.mpf(1.25), 11, True),
     "v, the value there: high, low part; (value at v + r - value - 5/4 r)/r by powers of r")
