# The two commands a new engineer needs: `make test` and `make run`. Both start from a bare machine.
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
GENERATOR := $(shell command -v ninja >/dev/null 2>&1 && echo "-G Ninja")
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
# `make fuzz`: seconds per fuzz target, and the targets (all of tests/fuzz/ when empty).
FUZZ_SECONDS ?= 60
FUZZ_TARGETS ?=

.PHONY: all deps configure build test run run-engine bench package format clean fuzz test-asan test-tsan

all: build

deps:
	./scripts/install-deps

configure: deps
	@if [ ! -f $(BUILD_DIR)/CMakeCache.txt ]; then \
	  cmake -S . -B $(BUILD_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE); \
	fi

build: configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

# The board in its host console (with a display; without one under xvfb-run, leaving build/board.png).
run: build
	./scripts/run-board $(BUILD_DIR)

# The engine's tour with nbtool on the sample files.
run-engine: build
	./scripts/run-sample $(BUILD_DIR)

bench: build
	./scripts/run-bench $(BUILD_DIR)

# Instrumented builds, each in a folder of its own (see tests/fuzz/README.md and tests/sanitizers/).
fuzz: deps
	JOBS=$(JOBS) ./scripts/run-fuzz build-fuzz $(FUZZ_SECONDS) $(FUZZ_TARGETS)

test-asan: deps
	JOBS=$(JOBS) ./scripts/run-sanitized asan build-asan

test-tsan: deps
	JOBS=$(JOBS) ./scripts/run-sanitized tsan build-tsan

# The Debian package build/noticeboard_<version>_<arch>.deb (install: sudo apt-get install ./build/noticeboard_*.deb).
package: build
	cd $(BUILD_DIR) && cpack -G DEB

format:
	git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format -i

clean:
	rm -rf $(BUILD_DIR) build-fuzz build-asan build-tsan
