"""ln gamma by rows for a = k/8, k = 8 .. 64."""
from floats import emit
from gamma_rows import log_gamma_series, mpf, row

emit([row(log_gamma_series(mpf(k) / 8), mpf(1) / 16) for k in range(8, 65)],
     "ln gamma a; slope; what the value lacks; (ln gamma(a + r) - ln gamma(a) - slope r)/r by powers of r; a = k/8")
