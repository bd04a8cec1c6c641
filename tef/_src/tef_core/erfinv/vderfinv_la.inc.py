"""The inverse error function by rows of y = 1 - |x| from 2^-54 to 1/2, and of |x| from 0 to 1/2, for LA."""
from floats import emit
from inverse_erf import rows_in_y

emit(rows_in_y(1, 1, 10, False),
     "v, the value there; (value at v + r - value - r)/r by powers of r")
