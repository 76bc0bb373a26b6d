# Thin front end over CMake. `make demo` and `make test` are all a newcomer needs.
BUILD      ?= build
ASAN_BUILD ?= build-asan
BENCH_BUILD ?= build-bench
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_ARGS ?=

.PHONY: all build demo test test-sanitize bench clean prereqs

all: build

prereqs:
	@sh scripts/prereqs.sh

build: prereqs
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release $(CMAKE_ARGS) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

# Builds the library and runs the demo program.
demo: build
	@$(BUILD)/examples/orvspx_demo

# Builds everything and runs the whole test suite.
test: build
	@cd $(BUILD) && ctest -j $(JOBS) --output-on-failure

# The same suite built with AddressSanitizer and UndefinedBehaviorSanitizer.
test-sanitize: prereqs
	@cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DORVSPX_SANITIZE=ON -DORVSPX_BUILD_EXAMPLES=OFF $(CMAKE_ARGS) >/dev/null
	@cmake --build $(ASAN_BUILD) -j $(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest -j $(JOBS) --output-on-failure

# Benchmarks of the library next to its peers (FFTW, KissFFT, VOLK, liquid-dsp,
# memcpy/memset, plain loops): installs the peers when it can, builds in
# Release, runs every comparison and rewrites docs/benchmarks.md and its plots.
BENCH_REPS ?= 5
# The report's plots use Debian's matplotlib, which belongs to the system Python.
BENCH_PYTHON ?= $(shell [ -x /usr/bin/python3 ] && echo /usr/bin/python3 || echo python3)
BENCH_MIN_TIME ?= 0.1
bench:
	@sh scripts/prereqs.sh bench
	@cmake -S . -B $(BENCH_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release -DORVSPX_BUILD_TESTS=OFF \
	  -DORVSPX_BUILD_EXAMPLES=OFF -DORVSPX_BUILD_BENCH=ON $(CMAKE_ARGS) >/dev/null
	@cmake --build $(BENCH_BUILD) -j $(JOBS)
	@$(BENCH_PYTHON) scripts/bench_report.py $(BENCH_BUILD)/bench docs/benchmarks.md \
	  --repetitions $(BENCH_REPS) --min-time $(BENCH_MIN_TIME)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(BENCH_BUILD)
