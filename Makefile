# The README's two commands. Both install what is missing, configure and build.
#   make demo   one whole sale through the library against the emulator on 127.0.0.1:55555
#   make test   build and pass every test (what CI runs)
# And the checks that CI runs after them:
#   make repeat the tests that drive servers, processes or scripts, twice more
#   make asan   the library's tests built with AddressSanitizer and UndefinedBehaviorSanitizer
#   make tsan   the concurrency tests built with ThreadSanitizer
#   make fuzz   every fuzzer, built with clang and both sanitizers, FUZZ_SECONDS each
# And, by hand:
#   make bench    the benchmarks, Release, with their ratios to the references
#   make docs     the reference documentation, HTML, in build/docs/html
#   make package  the Debian packages, in build/packages
#   make install  installs the build (PREFIX=/usr/local by default)

BUILD_DIR  ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS       ?= 2
ASAN_DIR   ?= build-asan
TSAN_DIR   ?= build-tsan
FUZZ_DIR   ?= build-fuzz
BENCH_DIR  ?= build-bench
FUZZ_SECONDS ?= 30
CTEST      := ctest --output-on-failure --timeout 300 -j$(JOBS)

MAKEFLAGS += --no-print-directory

.PHONY: all deps configure build test repeat demo asan tsan fuzz bench docs package install format clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DVESK_BUILD_TESTS=ON \
		-DVESK_BUILD_BENCHMARKS=ON -DVESK_BUILD_DOCS=ON --log-level=WARNING

build: configure
	@cmake --build $(BUILD_DIR) -j$(JOBS)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure --timeout 120 -j$(JOBS)

# The tests that drive a loopback server, a child process or a script (label
# "wire"), REPEAT more times each: a test that passes only by luck shows here.
REPEAT ?= 2
repeat: build
	@cd $(BUILD_DIR) && ctest --output-on-failure --timeout 120 -j$(JOBS) -L '^wire$$' \
		--repeat until-fail:$(REPEAT) && echo "every wire test passed $(REPEAT) more times"

# The demo builds only the command-line client (the library, its stand-ins
# and the emulator with it). A fresh build tree is configured without the
# tests, benchmarks and docs; one that `make test` configured stays as it is.
demo:
	@scripts/install-deps.sh demo
	@test -f $(BUILD_DIR)/CMakeCache.txt || cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) \
		-DVESK_BUILD_TESTS=OFF -DVESK_BUILD_BENCHMARKS=OFF -DVESK_BUILD_DOCS=OFF --log-level=WARNING
	@cmake --build $(BUILD_DIR) -j$(JOBS) --target vesk
	@$(BUILD_DIR)/tools/cli/vesk demo

docs: configure
	@cmake --build $(BUILD_DIR) --target docs

package: build
	@cd $(BUILD_DIR) && (cpack -G DEB -B packages > packages.log 2>&1 || (cat packages.log; exit 1))
	@ls $(BUILD_DIR)/packages/*.deb

PREFIX ?= /usr/local
install: build
	@cmake --install $(BUILD_DIR) --prefix $(PREFIX)

# The library's tests with AddressSanitizer and UndefinedBehaviorSanitizer;
# -O1 keeps the build quick and the tests fast.
asan: deps
	@cmake -S . -B $(ASAN_DIR) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g" \
		-DVESK_SANITIZE="address;undefined" -DVESK_BUILD_TOOLS=OFF -DVESK_BUILD_BENCHMARKS=OFF \
		--log-level=WARNING
	@cmake --build $(ASAN_DIR) -j$(JOBS)
	@cd $(ASAN_DIR) && ASAN_OPTIONS=detect_leaks=1 $(CTEST)

# The concurrency tests with ThreadSanitizer.
tsan: deps
	@cmake -S . -B $(TSAN_DIR) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g" \
		-DVESK_SANITIZE=thread -DVESK_BUILD_TOOLS=OFF -DVESK_BUILD_BENCHMARKS=OFF \
		--log-level=WARNING
	@cmake --build $(TSAN_DIR) -j$(JOBS) --target concurrent_calls_test
	@cd $(TSAN_DIR) && TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 suppressions=$(CURDIR)/tests/tsan.supp" \
		$(CTEST) -R '^Concurrent'

# The fuzzers, built with clang and both sanitizers, each run FUZZ_SECONDS.
fuzz: deps
	@cmake -S . -B $(FUZZ_DIR) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g" \
		-DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 \
		-DVESK_SANITIZE="address;undefined" -DVESK_BUILD_FUZZERS=ON \
		-DVESK_BUILD_TESTS=OFF -DVESK_BUILD_BENCHMARKS=OFF --log-level=WARNING
	@cmake --build $(FUZZ_DIR) -j$(JOBS) --target fuzzers
	@scripts/run-fuzzers.sh $(FUZZ_DIR) $(FUZZ_SECONDS)

# The benchmarks in a Release build; body_bench prints the ratios to its
# references at the end (bench/README.md keeps the last figures).
bench: deps
	@cmake -S . -B $(BENCH_DIR) -DCMAKE_BUILD_TYPE=Release -DVESK_BUILD_TESTS=OFF \
		-DVESK_BUILD_TOOLS=OFF --log-level=WARNING
	@cmake --build $(BENCH_DIR) -j$(JOBS) --target body_bench call_bench record_bench
	@$(BENCH_DIR)/bench/body_bench

format:
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	@rm -rf $(BUILD_DIR)
