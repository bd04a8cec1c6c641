/* A C program that was built against the installed library: e, its logarithm, and an error's status. */
#include <orx/serv.h>
#include <orx/tef.h>
#include <stdio.h>

int main(void) {
  double x[3] = {0.0, 1.0, 1000.0}, y[3], ln[3];
  _tefSetMode(TEF_ERRMODE_IGNORE);
  _tefdExp(3, x, y);
  _tefdLn(3, y, ln);
  printf("e = %.15f, status %d\n", y[1], _tefGetErrStatus());
  if (y[0] != 1.0 || y[1] < 2.718281828459044 || y[1] > 2.718281828459046) return 1;
  if (ln[0] != 0.0 || ln[1] < 0.9999999999999998 || ln[1] > 1.0000000000000002) return 1;
  return _tefGetErrStatus() == StatusOverflow && orx_serv_live_blocks() == 0 ? 0 : 1;
}
