# The commands of the project. Each installs the Debian packages that it misses, configures, builds and goes.

BUILD ?= build/release
JOBS ?= 2
PREFIX ?= /usr/local

.PHONY: all run test faults acceptance fuzz bench format lint lint-fast lint-deep headers asan golden pictures typelib install package clean

all: $(BUILD)/build.ninja
	cmake --build $(BUILD) --parallel $(JOBS)

$(BUILD)/build.ninja: CMakePresets.json
	tools/install-packages build run test
	cmake --preset release -B $(BUILD)

## The demo: a window where there is a display; without one, both reports and pictures in build/demo.
run: $(BUILD)/build.ninja
	tools/install-packages build run test
	cmake --build $(BUILD) --parallel $(JOBS) --target velcoran-host velcoran
	$(BUILD)/bin/velcoran-host demo --out build/demo

## Every test.
test: all
	tools/install-packages build run test
	ctest --test-dir $(BUILD) --parallel $(JOBS) --output-on-failure

## Exports on full disks, with calls that fail, without threads, under signals. As root, for small disks of its own.
faults: $(BUILD)/build.ninja
	tools/install-packages build run test
	cmake --build $(BUILD) --parallel $(JOBS) --target velcoran-host velcoran
	python3 tests/faults/faults.py $(BUILD)/bin/velcoran-host

## Heavy things against an installation: hosts in other toolkits and in Python, a thousand rounds, a hundred processes.
acceptance: $(BUILD)/build.ninja
	tools/install-packages build run test acceptance
	cmake --build $(BUILD) --parallel $(JOBS) --target velcoran-host velcoran
	tools/run-acceptance $(BUILD) build/acceptance

## Coverage-guided fuzzers of what reads others' texts, a minute each.
fuzz:
	tools/install-packages build run fuzz
	cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=clang++ -DVELCORAN_FUZZERS=ON \
		-DBUILD_TESTING=OFF -DCMAKE_UNITY_BUILD=ON
	tools/run-fuzzers build/fuzz

## Benchmarks, each beside its floor.
bench:
	tools/install-packages build run test bench
	cmake --preset release -B build/bench -DVELCORAN_BENCHMARKS=ON -DBUILD_TESTING=OFF
	cmake --build build/bench --parallel $(JOBS)
	tools/run-benchmarks build/bench

format:
	tools/install-packages lint
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

## Format and spelling first, then static analysis.
lint: lint-fast lint-deep

lint-fast:
	tools/install-packages lint
	tools/lint fast

lint-deep:
	tools/install-packages build lint
	tools/lint deep

## Every header by itself, with what its target hands out.
headers: $(BUILD)/build.ninja
	cmake --build $(BUILD) --parallel $(JOBS) --target headers

## The fast tests under the address and undefined-behaviour sanitizers.
asan:
	tools/install-packages build run test
	cmake --preset asan
	cmake --build build/asan --parallel $(JOBS)
	LSAN_OPTIONS=suppressions=$(CURDIR)/tools/leaks.supp \
		ctest --test-dir build/asan --parallel $(JOBS) --output-on-failure --label-exclude slow

## Writes the golden files of pages anew; look at the difference before it is committed.
golden: all
	VELCORAN_GOLDEN=write ctest --test-dir $(BUILD) --output-on-failure
	git diff --stat -- tests/data

## The pictures of the documents, taken anew.
pictures: $(BUILD)/build.ninja
	tools/install-packages build run test
	cmake --build $(BUILD) --parallel $(JOBS) --target velcoran-host velcoran
	tools/make-pictures $(BUILD)/bin/velcoran-host docs/pictures

## The type libraries of the interface definitions, where their compiler is installed.
typelib:
	tools/make-typelib build/typelib

install: $(BUILD)/build.ninja
	tools/install-packages build run
	cmake --build $(BUILD) --parallel $(JOBS) --target velcoran velcoran-host
	umask 022 && DESTDIR=$(DESTDIR) cmake --install $(BUILD) --prefix $(PREFIX)

## A Debian package in build/release/package.
package: $(BUILD)/build.ninja
	tools/install-packages build run package
	cmake --build $(BUILD) --parallel $(JOBS) --target velcoran velcoran-host
	rm -f $(BUILD)/package/*.deb
	cd $(BUILD) && cpack
	packaging/check-package $(BUILD)/package/*.deb $(BUILD)

clean:
	rm -rf build
