# The README's two commands. Both install what is missing, configure and build.
#   make demo   one whole sale through the library against the emulator on 127.0.0.1:55555
#   make test   build and pass every test (what CI runs)

BUILD_DIR  ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS       ?= 2

MAKEFLAGS += --no-print-directory

.PHONY: all deps configure build test demo format clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) --log-level=WARNING

build: configure
	@cmake --build $(BUILD_DIR) -j$(JOBS)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure --timeout 120 -j$(JOBS)

demo: build
	@$(BUILD_DIR)/tools/cli/vesk demo

format:
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	@rm -rf $(BUILD_DIR)
