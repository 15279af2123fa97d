# What a person can do here; `make help` lists it. Each target installs the packages it lacks.

.DEFAULT_GOAL := help
.PHONY: help build run test bench pictures fuzz format lint package clean

help: ## list the targets
	@awk -F ':.*## ' '/^[a-z]+:.*## / { printf "  make %-8s %s\n", $$1, $$2 }' Makefile

build: ## build everything (release)
	@scripts/install-packages build run
	cmake --preset release
	cmake --build --preset release

run: ## start Tessaly; without a display, play a tour into build/tour
	@scripts/run

test: ## build and run the whole suite
	@scripts/install-packages build run session
	cmake --preset release
	cmake --build --preset release
	@scripts/run-tests release --parallel $(shell nproc) $(CTEST_FLAGS)

bench: ## measure, and print the table of figures
	@scripts/install-packages build run session
	cmake --preset release
	cmake --build --preset release
	@scripts/bench

pictures: ## take pictures of the program, those of the documentation too
	@scripts/install-packages build run session
	cmake --preset release
	cmake --build --preset release --target tessaly tessaly-pictures
	@scripts/pictures

fuzz: ## try the parsers with made-up input, FUZZ_SECONDS (600) for each
	@scripts/install-packages build fuzz
	@scripts/fuzz

format: ## bring every source into the house style
	@scripts/install-packages lint
	git ls-files -z -- '*.h' '*.cpp' | xargs -0 clang-format -i

lint: ## check style and clang-tidy's findings
	@scripts/install-packages build lint
	cmake --preset release
	cmake --build --preset release
	@scripts/lint

package: ## build the Debian package into build/package
	@scripts/install-packages build run
	cmake --preset release
	cmake --build --preset release
	cpack --config build/release/CPackConfig.cmake -G DEB -B build/package

clean: ## remove everything that was built
	rm -rf build
