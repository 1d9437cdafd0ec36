#include "platform/Random.h"

#include <chrono>
#include <mutex>
#include <random>

namespace {

std::mutex Lock;
std::mt19937& Engine() {
    static std::mt19937 engine(
        static_cast<uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count()));
    return engine;
}

} // namespace

void Randomize() {
    std::lock_guard<std::mutex> guard(Lock);
    Engine().seed(static_cast<uint32_t>(std::chrono::system_clock::now().time_since_epoch().count()));
}

void RandSeed(uint32_t seed) {
    std::lock_guard<std::mutex> guard(Lock);
    Engine().seed(seed);
}

int Random(int range) {
    if (range <= 0) return 0;
    std::lock_guard<std::mutex> guard(Lock);
    return std::uniform_int_distribution<int>(0, range - 1)(Engine());
}
