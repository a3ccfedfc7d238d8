# The two commands of the README: `make demo` and `make test`.
# Both run scripts/setup.sh first, so a fresh machine needs nothing else.
JOBS ?= $(shell nproc)
RELEASE_DIR ?= build/release
SANITIZE_DIR ?= build/sanitize
EXAMPLE ?= examples/catalog.xml

.PHONY: setup configure demo build build-sanitize check check-sanitize test bench clean

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

# Every test, in the Release build and under AddressSanitizer + UndefinedBehaviorSanitizer.
test: check check-sanitize

bench: build
	$(RELEASE_DIR)/bench/text_bench
	$(RELEASE_DIR)/bench/detection_bench

clean:
	rm -rf build
