"""For each exponent field e of a single the 96 bits of 1/(2 pi) that its integer m meets, m 2^(e - 150) being the single.

Row e is the integer part of 2^(e - 54)/(2 pi), modulo 2^96: m times it, modulo 2^96, is the fraction of a turn in x/(2 pi), in
units of 2^-96 and too small by less than m of them. Words from the highest."""
from turns import emit_turns

emit_turns(256, 54, 32)
