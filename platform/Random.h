// The process-wide pseudo-random generator (the log's retry jitter). Thread-safe.
#pragma once

#include <cstdint>

// Seeds the generator from the clock.
void Randomize();

// Seeds the generator with a fixed value (tests that need a repeatable sequence).
void RandSeed(uint32_t seed);

// A whole number in 0..range-1; 0 when range <= 0.
int Random(int range);
