# The two commands a new engineer needs: `make test` and `make run`. Both start from a bare machine.
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
GENERATOR := $(shell command -v ninja >/dev/null 2>&1 && echo "-G Ninja")
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build test run run-engine bench package format clean

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

# The Debian package build/noticeboard_<version>_<arch>.deb (install: sudo apt-get install ./build/noticeboard_*.deb).
package: build
	cd $(BUILD_DIR) && cpack -G DEB

format:
	git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format -i

clean:
	rm -rf $(BUILD_DIR)
