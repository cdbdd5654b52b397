# The two set-up commands of the README. Both install what is missing, configure and build.
#   make run    builds and runs Ostrel Live
#   make test   builds and runs every test, then the sanitizer builds of the logic tests

.PHONY: run analyze-demo test test-long deps dev asan tsan release package bench format clean

JOBS ?= $(shell nproc)

deps:
	@scripts/install-deps.sh

release: deps
	cmake --preset release
	cmake --build --preset release -j $(JOBS)

# The Debian package of the release build, in build/release.
package: release
	cd build/release && cpack

# The station itself, on the default audio input.
run: release
	build/release/src/app/ostrel-live

# The analyser measures a generated 1 kHz tone at -20 dBFS peak, streamed as WAV through
# standard input.
analyze-demo: release
	build/release/tools/ostrel-tone/ostrel-tone --frequency 1000 --amplitude 0.1 --seconds 3 \
	  | build/release/tools/ostrel-analyze/ostrel-analyze - --weighting Z --summary

dev: deps
	cmake --preset dev
	cmake --build --preset dev -j $(JOBS)

asan: deps
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)

tsan: deps
	cmake --preset tsan
	cmake --build --preset tsan -j $(JOBS) --target measurement_tests sessions_tests

test: dev asan tsan
	ctest --preset dev -j $(JOBS)
	ctest --preset asan -j $(JOBS)
	ctest --preset tsan

# The long mode: every test, then each fuzz target for FUZZ_SECONDS (five minutes by default).
FUZZ_SECONDS ?= 300
test-long: test
	scripts/install-deps.sh --fuzz
	scripts/run-fuzzers.sh $(FUZZ_SECONDS)

bench: dev
	build/dev/benchmarks/measurement_benchmarks
	build/dev/benchmarks/session_benchmarks

# The same files and clang-format as the code_format test.
format:
	scripts/check-format.sh --fix

clean:
	rm -rf build
