#include "open_files/host_suites.h"

SPBasicSuite* BasicSuiteOf(const imStdParms* std_parms) {
  return std_parms->piSuites->utilFuncs->getSPBasicSuite();
}

void ReleaseSuite(SPBasicSuite* basic, const char* name, int32_t version) {
  basic->ReleaseSuite(name, version);
}
