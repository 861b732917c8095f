# The front door. The work is in the presets and in Scripts/; `make test PRESET=asan` does the same with another preset.
PRESET ?= dev

.PHONY: help setup build run test bench format tidy clean
.NOTPARALLEL:

help:
	@echo 'make run      build the sample shop and open it'
	@echo 'make test     build everything and run the tests (PRESET=asan or tsan under sanitizers)'
	@echo 'make setup    install what is missing          make build   build everything'
	@echo 'make bench    measure, with the release preset make clean   remove the build folder'
	@echo 'make format   lay the code out                 make tidy    look for doubtful code (ALL=1: in every file)'

setup:
	@Scripts/setup.sh build

build: setup
	@Scripts/build.sh $(PRESET)

run: setup
	@Scripts/build.sh $(PRESET) showroom
	@build/$(PRESET)/bin/showroom

test:
	@Scripts/setup.sh build test
	@Scripts/build.sh $(PRESET)
	@ctest --preset $(PRESET)

bench: setup
	@Scripts/build.sh release mivora_bench
	@build/release/bin/mivora_bench

format tidy:
	@Scripts/setup.sh tools
	@Scripts/$@.sh

clean:
	@rm -rf build
