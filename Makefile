# Entry points for a newcomer on a fresh Debian machine:
#   make demo   install what is missing, build, score the bundled sample captures
#   make test   install what is missing, build, run the whole suite through CTest
BUILD_DIR ?= build
ASAN_DIR ?= build-asan
TSAN_DIR ?= build-tsan
BUILD_TYPE ?= Release
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build test demo sanitize tsan memcheck bench clean install

all: build

deps:
	bash scripts/install-deps.sh

configure: deps
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE)

build: configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

demo: build
	bash scripts/demo.sh $(BUILD_DIR)

# The same suite under AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize: deps
	cmake -S . -B $(ASAN_DIR) -DCMAKE_BUILD_TYPE=Debug -DSENTIVO_SANITIZE=ON -DSENTIVO_BUILD_BENCH=OFF
	cmake --build $(ASAN_DIR) -j $(JOBS)
	ctest --test-dir $(ASAN_DIR) --output-on-failure -j $(JOBS)

# Handles on many threads under ThreadSanitizer: 8 handles x 100 captures.
tsan: deps
	cmake -S . -B $(TSAN_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSENTIVO_TSAN=ON -DSENTIVO_BUILD_BENCH=OFF -DSENTIVO_BUILD_TOOLS=ON
	cmake --build $(TSAN_DIR) -j $(JOBS) --target sdk_tests
	SENTIVO_THREAD_CAPTURES=100 TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
		$(TSAN_DIR)/bin/sdk_tests --gtest_filter='Concurrency.*'

# valgrind's memcheck on 1000 handles and 50 judged captures: no byte lost,
# no invalid read or write.
MEMCHECK_CAPTURES = $(addprefix tests/conformance/synthetic/,live_a smooth_c no_finger skewed moving_1 moving_2 no_falloff overexposed lower_empty smooth_d)
memcheck: build
	valgrind --error-exitcode=1 --leak-check=full --errors-for-leak-kinds=definite,indirect \
		--show-leak-kinds=definite,indirect $(BUILD_DIR)/bin/memory_check $(MEMCHECK_CAPTURES)

bench: build
	bash scripts/bench.sh $(BUILD_DIR)

install: build
	cmake --install $(BUILD_DIR)

clean:
	rm -rf $(BUILD_DIR) $(ASAN_DIR) $(TSAN_DIR)
