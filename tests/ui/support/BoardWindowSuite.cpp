#include "support/BoardWindowSuite.h"

void TBoardWindowSuite::init() {
    host = std::make_unique<TPackageHost>();
    QVERIFY2(host->Loaded(), qPrintable(host->ErrorText()));
    host->Owner.show();
}

void TBoardWindowSuite::cleanup() {
    QVERIFY(host->CloseBoard());
    host.reset();
}
