# The two commands of the README: `make demo` and `make test`.
# Both run scripts/setup.sh first, so a fresh machine needs nothing else.
JOBS ?= $(shell nproc)
RELEASE_DIR ?= build/release
SANITIZE_DIR ?= build/sanitize
TSAN_DIR ?= build/tsan
EXAMPLE ?= examples/catalog.xml

.PHONY: setup configure demo build build-sanitize check check-sanitize check-tsan check-python-install test bench fuzz fuzz-report clean

setup:
	@bash scripts/setup.sh

configure: setup
	cmake -S . -B $(RELEASE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release

build: configure
	cmake --build $(RELEASE_DIR) -j $(JOBS)

build-sanitize: setup
	cmake -S . -B $(SANITIZE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTOLVEN_SANITIZE=ON
	cmake --build $(SANITIZE_DIR) -j $(JOBS)

# Detect the table of the bundled example, print how to import it, then import it as CSV.
demo: configure
	cmake --build $(RELEASE_DIR) -j $(JOBS) --target tolven-xml
	$(RELEASE_DIR)/src/tolven-xml detect $(EXAMPLE)
	$(RELEASE_DIR)/src/tolven-xml read $(EXAMPLE)

check: build
	cd $(RELEASE_DIR) && ctest --output-on-failure -j $(JOBS)

check-sanitize: build-sanitize
	cd $(SANITIZE_DIR) && ctest --output-on-failure -j $(JOBS)

# Detection and import on several threads at once, and the parser's relay of events to a second
# thread, under ThreadSanitizer (its own build: it does not combine with AddressSanitizer). Only
# the libraries and these tests are built.
check-tsan: setup
	cmake -S . -B $(TSAN_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTOLVEN_TSAN=ON -DTOLVEN_BUILD_BENCH=OFF
	cmake --build $(TSAN_DIR) -j $(JOBS) --target api_tests xml_tests
	TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" $(TSAN_DIR)/tests/api_tests --gtest_filter='Threads.*'
	TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" $(TSAN_DIR)/tests/xml_tests --gtest_filter='EventRelay.*'

# The Python package from a clean copy of the checkout into a fresh venv, with no package index.
check-python-install: setup
	bash scripts/check_python_install.sh

# Every test: Release (C++, Python, the installed package), AddressSanitizer + UndefinedBehaviorSanitizer,
# ThreadSanitizer, the offline pip install, then a short fuzzing run (skipped without clang).
test: check check-sanitize check-tsan check-python-install fuzz-report

# The short fuzzing run of make test reports a new finding without failing the run: the inputs it
# finds are random, and known ones are replayed by ctest (fuzz_smoke_*) from fuzz/regressions/.
fuzz-report: setup
	bash scripts/fuzz.sh $(FUZZ_SECONDS) || echo "fuzz: a finding, kept in build/fuzz/artifacts/; make fuzz to reproduce"

# The fuzz targets, built with clang and run FUZZ_SECONDS each (scripts/fuzz.sh).
FUZZ_SECONDS ?= 30
fuzz: setup
	bash scripts/fuzz.sh $(FUZZ_SECONDS)

bench: build
	$(RELEASE_DIR)/bench/text_bench
	$(RELEASE_DIR)/bench/detection_bench

clean:
	rm -rf build
