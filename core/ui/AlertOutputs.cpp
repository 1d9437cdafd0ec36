#include "core/ui/AlertOutputs.h"

namespace {

TAlertOutputs gOutputs; // GUI thread only

} // namespace

void SetBoardAlertOutputs(const TAlertOutputs& Outputs) {
    gOutputs = Outputs;
}

TAlertOutputs BoardAlertOutputs() {
    return gOutputs;
}
