\\ Checks the parameter table of the Wichmann-Hill generators with PARI, on nothing but the table's rows:
\\   TABLE=kob/_src/kob_sub_kernel/wh/wh_tables.inc gp -q tools/kob/wh_verify.gp < /dev/null
\\ Moduli prime, below 2^24 and all different; multipliers below 256 and primitive roots; the period; the spectral
\\ test of the combined generator in dimensions 2 to 6.  Prints the figures of merit and "table holds", or an error.

default(realprecision, 100);
rows = List();
WH_ROW(m0, m1, m2, m3, a0, a1, a2, a3) = listput(rows, [[m0, m1, m2, m3], [a0, a1, a2, a3]]);
foreach(readstr(getenv("TABLE")), line, if(#strsplit(line, "WH_ROW(") == 2, eval(line)));

require(holds, what, row) = if(!holds, error(what, " of row ", row));
hermite = [1, 4/3, 2, 4, 8, 64/3];

figure(m, a) =
{
  my(M = vecprod(m), A = lift(chinese(vector(4, i, Mod(a[i], m[i])))), least = 1, B, shortest);
  for(t = 2, 6,
    B = matid(t); B[1, 1] = M;
    for(j = 2, t, B[1, j] = -lift(Mod(A, M)^(j - 1)));
    B = B * qflll(B);
    shortest = sqrt(qfminim(B~ * B, , , 2)[2]);
    least = min(least, shortest / (hermite[t]^(1 / (2 * t)) * M^(1 / t))));
  least
};

{
  require(#rows == 273, "number", #rows);
  moduli = concat(apply(row -> row[1], Vec(rows)));
  require(#Set(moduli) == 4 * 273, "repeated modulus", "any");
  figures = vector(#rows);
  for(k = 1, #rows,
    [m, a] = rows[k];
    for(i = 1, 4,
      require(isprime(m[i]) && m[i] < 2^24, "modulus", k - 1);
      require(a[i] < 256 && znorder(Mod(a[i], m[i])) == m[i] - 1, "multiplier", k - 1));
    require(lcm(apply(x -> x - 1, m)) == vecprod(apply(x -> x - 1, m)) / 8, "period", k - 1);
    figures[k] = figure(m, a));
  chosen = figures[2 .. 272];
  printf("least modulus %d = 2^24 - %d; least period 2^%.3f\n", vecmin(moduli), 2^24 - vecmin(moduli),
    vecmin(apply(row -> log(vecprod(apply(x -> x - 1, row[1])) / 8) / log(2), Vec(rows))));
  printf("figure of merit: row 0 %.3f, row 272 %.3f; rows 1 to 271 from %.3f to %.3f, mean %.3f\n", figures[1],
    figures[273], vecmin(chosen), vecmax(chosen), vecsum(chosen) / #chosen);
  print("table holds");
}
