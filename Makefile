# A thin front over CMake. Each target does its own set-up.

DEMO_FOLDER ?= build/demo

.PHONY: demo test bench coverage fuzz format lint sanitize setup clean

setup:
	@scripts/setup.sh

build/default/build.ninja: | setup
	@cmake --preset default

# The main job on sample data, in a folder of its own.
demo: setup build/default/build.ninja
	@cmake --build --preset default --target pairwise wmplugin
	@build/default/bin/pairwise demo $(DEMO_FOLDER)

test: setup build/default/build.ninja
	@cmake --build --preset default
	@ctest --preset default

# The same suite with clang, AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize: setup
	@cmake --preset sanitize
	@cmake --build --preset sanitize
	@ctest --preset sanitize

# Which lines and branches the suite runs through.
coverage: setup
	@cmake --preset coverage
	@cmake --build --preset coverage
	@scripts/coverage.sh

# Each measure for BENCH_MIN_TIME seconds at least; about half a second by default.
BENCH_MIN_TIME ?=
bench: setup
	@cmake --preset bench
	@cmake --build --preset bench
	@scripts/bench_table.py build/bench/bin $(BENCH_MIN_TIME)

# Each target for FUZZ_SECONDS.
FUZZ_SECONDS ?= 60
fuzz: setup
	@cmake --preset fuzz
	@cmake --build --preset fuzz --target fuzzers
	@scripts/fuzz.sh $(FUZZ_SECONDS)

format:
	@scripts/sources.sh | xargs clang-format -i

lint: setup
	@scripts/lint.sh

clean:
	@rm -rf build
