#!/usr/bin/env bash
# try_demo.sh DEMO DATA
# A good run exits with 0 and prints figures that are known from elsewhere; a bad file gives one line on standard
# error that names file, line and fault, and a non-zero exit.
set -euo pipefail
demo=$1 data=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
fail() { echo "FAILED: $*"; status=1; }

cd "$work"  # where the picture goes
"$demo" "$data" > "$work/out" || fail "the good run exits with $?"
expect() { grep -qE -e "$1" "$work/out" || fail "no line of the demo matches: $1"; }
# 5.31 / 3.93 = 1.3511, its tenth root 1.0306.
expect '1790-1800 +3.93 to +5.31 +1\.3511 +3\.06 '
expect 'trend 0\.3[5-9][0-9] % per year'
# Mercury: 59.1 kJ/mol at the boiling point of 356.7 C, 61.4 at room temperature.
expect 'heat of vaporisation (59|60|61)\.[0-9] kJ/mol, boils at 35[0-9]\.[0-9] C'
expect 'callback: vdLn, status 2 \(singularity\), index 1, argument 0, result -inf'
expect 'callback: vdLn, status 1 \(domain\), index 3, argument -3\.93, result -?nan replaced by 0'
expect 'callback: vdLn, status -1 \(bad size\), index -1'
expect 'callback: vdExp, status -2 \(bad pointer\)'
# Distances and bearings by another formula (spherical law of cosines); days of London and Reykjavik as almanacs give them.
expect 'distances from 143 to 2289 km; .* at most [0-9]e-0[67] mm apart'
expect ' 6\.4 +-15\.56 +167\.62 +127 +1186\.4 +282\.4$'
expect ' 6\.0 +-21\.59 +170\.56 +165 +908\.8 +243\.7$'
expect 'London .* 16 h 38 m .* 7 h (49|50) m'
expect 'Reykjavik .* 21 h 0[89] m .* 4 h 0[78] m'
expect 'Longyearbyen .* 24 h 00 m .* 0 h 00 m'
expect '^ +2 arc cosines of numbers beyond 1 or -1 were reported'
# (39.8 / 3.93)^(1/80) = 1.02936, and 3.93 times its 180th power is 719.0.
expect '1790 to 1870, 2\.94 % per year'
expect '1970 +203\.20 +71[0-9]\.[0-9]+'
# At the corner half the power, 10 log10 2 = 3.0103 dB, and 45 degrees; a decade on 20 dB less 0.043.
expect '^ +1\.00 +-3\.010 +-45\.000$'
expect '^ +10\.00 +-20\.043 +-84\.289$'
# A quarter of a wave makes 50^2/100 = 25 Ohm of 100 and half a wave brings them back, but for what the cable loses.
expect '^ +0\.00 +100\.000 +\+0\.000 i$'
expect '^ +0\.25 +25\.[0-9]+ +[+-]0\.000 i$'
expect '^ +0\.50 +98\.[0-9]+ +[+-]0\.000 i$'
grep -q '</svg>' impedance.svg || fail "the picture of impedance is not whole"
# Neptune: 164.79^(2/3) = 30.06 of the Earth's distances; the Earth's pull reaches 1.5 million km, Jupiter's 53.
expect 'Neptune +164\.79 +4515\.0 +449[0-9]\.[0-9] '
expect 'Earth +1\.00 +149\.6 +149\.6 +\+0\.00 % +1\.50'
expect 'Jupiter .* 53\.[0-9]+$'
expect 'length / cm\)\^1\.[0-9]+, correlation of the logarithms 0\.9[0-9]+'
# Pi to three deviations, and a simulation that was broken off.
expect '^ +8000000 +3\.14(0|1|2)'
expect 'resumed +8\.[0-9]+ +the same to the last bit'
# Histograms: chi-square with as many degrees of freedom as cells, to four deviations.
expect '^  Normal, .* 64 +([3-9][0-9]|10[0-9])\.[0-9] +[1-4]\.[0-9]+ sigma'
expect '^  Cauchy .* 64 +([3-9][0-9]|10[0-9])\.[0-9] +[1-4]\.[0-9]+ sigma'
expect '^  Gamma, .* 56 +([2-8][0-9]|9[0-9])\.[0-9] +[1-4]\.[0-9]+ sigma'
expect '^  Hypergeometric: .* 61 +([3-9][0-9]|10[0-9])\.[0-9] +[1-4]\.[0-9]+ sigma'
grep -q '</svg>' densities.svg || fail "the picture of densities is not whole"
# Irises: figures as any statistics package gives them.
expect 'sepal length +5\.8433 +0\.68569 +0\.30864 .* 5\.100 +5\.800 +6\.400 '
expect 'within species, by pooled covariance +0\.53024'
expect "given the petals' length and width +0\.62857"
# Outliers as published: 1 to 14 (Hawkins, Bradu and Kass 1984); 1, 2, 3, 21 (Rousseeuw and van Zomeren 1990). The mean of the
# ozone that was measured is 42.13.
expect 'by mean and covariance +12, 14$'
expect 'by the robust estimate +1-14$'
expect 'outliers by BACON +1-14$'
expect 'by the robust estimate +1-3, 21$'
expect 'Ozone +37 +42\.13 .* 4[12]\.[0-9][0-9] .* [12][0-9]\.[0-9] %'
grep -q '</svg>' robust.svg || fail "the picture of distances is not whole"
# The yearly mean of 1960 and the two means of the Nile's flow are 316.75, 1098 and 850 by plain sums.
expect '1960  316\.7[0-9]  316\.75'
expect 'mean flow until 1898 1(09|10)[0-9], from 1899 on 8[45][0-9];'
grep -q '</svg>' data_fitting.svg || fail "the picture is not whole"
expect '^  natural cubic +below 0\.1[01][0-9]  above 0\.1[34][0-9]'
expect '^  Hermite, slopes of PCHIP +below 0\.000  above 0\.000'
grep -q '</svg>' overshoot.svg || fail "the picture of overshoot is not whole"
# R: cor(qnorm(ppoints(100)), sort(Nile)) and ks.test; the textbook's 7.1 hours, with more digits of erf than its table has.
expect 'Nile, flow of a year +100 +919\.350 +169\.228 +0\.9863 +0\.0960'
expect 'Old Faithful, eruptions +272 +3\.488 +1\.141 +0\.9209 +0\.1813'
expect '0\.80 % at 0\.5 mm after 253[67][0-9] s = 7\.05 hours'
grep -q '</svg>' normal_plot.svg || fail "the picture of normal-plot is not whole"
# A million points: one over the root of the number, and one over the number.
expect '^ +1048576 +[2-9]\.[0-9]e-04 +[0-9]\.[0-9]e-0[67] '
expect 'points\^-0\.[45][0-9] \(pseudo\), points\^-(0\.9|1\.0)[0-9] \(Sobol\)'

# expect_refused FILE FAULT: with the data of $work/data the demo fails and says FILE:FAULT and nothing else.
expect_refused() {
  local file=$work/data/$1 code=0
  "$demo" "$work/data" vector-math > /dev/null 2> "$work/err" || code=$?
  [[ $code -ne 0 ]] || fail "$1: exit 0 where '$2' was due"
  [[ $(cat "$work/err") == "$file:$2" ]] || fail "$1: '$2' was due, got: $(cat "$work/err")"
  cp "$data"/*.csv "$work/data"
}
mkdir "$work/data"
cp "$data"/*.csv "$work/data"

rm "$work/data/co2.csv"
expect_refused co2.csv '0: cannot be opened: No such file or directory'
: > "$work/data/uspop.csv"
expect_refused uspop.csv '0: is empty'
echo "year,population_millions" > "$work/data/uspop.csv"
expect_refused uspop.csv '1: no rows follow the column names'
sed -i '1s/.*/year,people/' "$work/data/uspop.csv"
expect_refused uspop.csv '1: expected the columns year,population_millions, found year,people'
sed -i '4s/.*/1810;7.24/' "$work/data/uspop.csv"
expect_refused uspop.csv '4: expected 2 fields, found 1'
sed -i '469s/.*/1997.9,364.34 ppm/' "$work/data/co2.csv"
expect_refused co2.csv "469: ppm is not a number: '364.34 ppm'"
sed -i '2s/2e-04/nan/' "$work/data/pressure.csv"
expect_refused pressure.csv "2: pressure is not a number: 'nan'"
sed -i 's/$/\r/' "$work/data/uspop.csv"  # line ends of another system are no fault
"$demo" "$work/data" vector-math > /dev/null || fail "CR LF line ends are refused"

"$demo" > /dev/null 2>&1 && fail "no arguments are accepted"
"$demo" "$data" no-such-chapter > /dev/null 2>&1 && fail "an unknown chapter is accepted"
exit "$status"
