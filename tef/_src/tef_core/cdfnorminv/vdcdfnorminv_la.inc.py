"""The inverse normal distribution, its sign turned, by the same rows, for LA."""
import mpmath
from floats import emit
from inverse_erf import rows_in_y

emit(rows_in_y(mpmath.sqrt(2), mpmath.mpf(1.25), 10, False),
     "v, the value there; (value at v + r - value - 5/4 r)/r by powers of r")
