# Korvex: `make run` and `make test` install what is missing, build and go.
BUILD ?= build
BENCH_BUILD ?= build-bench
ASAN_BUILD ?= build-asan
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
SAMPLE := data/samples/sample.typ

.PHONY: all deps build run test bench samples fuzz clean

all: build

deps:
	@scripts/install-deps

build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j $(JOBS)

# Opens the editor window on the bundled sample.
run: build
	$(BUILD)/korvex $(SAMPLE)

# Both builds and their tests, each phase timed (scripts/test-all): the plain
# build runs everything; the second build runs our own suites again under
# AddressSanitizer and UndefinedBehaviorSanitizer, where any report fails the
# test that caused it.
test:
	BUILD=$(BUILD) ASAN_BUILD=$(ASAN_BUILD) JOBS=$(JOBS) scripts/test-all

# For a quick look while working: the plain build, without the suites that
# run mkgmap.
.PHONY: test-quick
test-quick:
	QUICK=1 BUILD=$(BUILD) JOBS=$(JOBS) scripts/test-all

bench: deps
	cmake -S . -B $(BENCH_BUILD) -DCMAKE_BUILD_TYPE=Release -DKORVEX_BENCH=ON -DKORVEX_TESTS=OFF
	cmake --build $(BENCH_BUILD) -j $(JOBS)
	@for b in $(BENCH_BUILD)/bench_*; do [ -x "$$b" ] && "$$b"; done

# libFuzzer targets under ASan and UBSan, each run FUZZ_SECONDS (default 60);
# see scripts/fuzz for the caps on time and memory.
FUZZ_SECONDS ?= 60
fuzz:
	@scripts/install-deps fuzz
	FUZZ_SECONDS=$(FUZZ_SECONDS) JOBS=$(JOBS) scripts/fuzz

# A Debian package of the editor and korvex-cli (Release, in its own build
# folder), then a check that it installs and runs without the checkout.
PACKAGE_BUILD ?= build-package
.PHONY: package package-check
package:
	@scripts/install-deps package
	cmake -S . -B $(PACKAGE_BUILD) -DCMAKE_BUILD_TYPE=Release -DKORVEX_TESTS=OFF -DCMAKE_INSTALL_PREFIX=/usr
	cmake --build $(PACKAGE_BUILD) -j $(JOBS)
	cd $(PACKAGE_BUILD) && cpack -G DEB

package-check: package
	PACKAGE_BUILD=$(PACKAGE_BUILD) scripts/package-check

# The core, korvex-cli and the core tests cross-built for 64-bit Windows
# (mingw-w64, no Qt), and run under Wine against the Linux build's CLI; see
# scripts/test-windows. Not part of `make test`: it takes minutes.
WINDOWS_BUILD ?= build-windows
.PHONY: windows test-windows
windows:
	@scripts/install-deps windows
	cmake -S . -B $(WINDOWS_BUILD) -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DCMAKE_BUILD_TYPE=Release \
	  -DKORVEX_GUI=OFF -DKORVEX_BENCH=OFF -DKORVEX_INTEROP_TESTS=OFF -DKORVEX_GTEST_SOURCE=/usr/src/googletest
	cmake --build $(WINDOWS_BUILD) -j $(JOBS) --target korvex-cli korvex_tests

test-windows: windows
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j $(JOBS) --target korvex-cli
	BUILD=$(BUILD) WINDOWS_BUILD=$(WINDOWS_BUILD) scripts/test-windows

# Builds the bundled sample's TYP from its hand-drawn text, data/samples/sample.txt.
samples: build
	$(BUILD)/korvex-make-samples data/samples

clean:
	rm -rf $(BUILD) $(BENCH_BUILD) $(ASAN_BUILD) $(PACKAGE_BUILD) $(WINDOWS_BUILD)
