"""For each biased exponent e of a double the 192 bits of 1/(2 pi) that its integer significand m meets.

Row e is the integer part of 2^(e - 883)/(2 pi), modulo 2^192: m times it, modulo 2^192, is the fraction of a turn
in x/(2 pi), x = m 2^(e - 1075), in units of 2^-192, but for what lies below. Words from the highest."""
from turns import emit_turns

emit_turns(2048, 883, 64)
