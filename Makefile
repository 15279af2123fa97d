# What a person can do here; `make help` lists it. Each target installs the packages it lacks.

.DEFAULT_GOAL := help
.PHONY: help build run test bench pictures fuzz format lint package clean

help: ## list the targets, with what they take from a clean clone on two cores
	@awk -F ':.*## ' '/^[a-z]+:.*## / { printf "  make %-8s %s\n", $$1, $$2 }' Makefile

build: ## build everything, release (4 min)
	@scripts/install-packages build run
	cmake --preset release
	cmake --build --preset release

run: ## start Tessaly; without a display, play a tour into build/tour (3 min)
	@scripts/run

test: ## build and run the whole suite (8 min)
	@scripts/install-packages build run session
	cmake --preset release
	cmake --build --preset release
	@scripts/run-tests release $(CTEST_FLAGS)

bench: ## measure, and print the table of figures (4 min to build, 10 to measure)
	@scripts/install-packages build run session
	cmake --preset release
	cmake --build --preset release
	@scripts/bench

pictures: ## take pictures of the program, those of the documentation too (4 min)
	@scripts/install-packages build run session
	cmake --preset release
	cmake --build --preset release --target tessaly tessaly-pictures
	@scripts/pictures

fuzz: ## try the parsers with made-up input, FUZZ_SECONDS (600) for each
	@scripts/install-packages build fuzz
	@scripts/fuzz

format: ## bring every source into the house style (seconds)
	@scripts/install-packages lint
	git ls-files -z -- '*.h' '*.cpp' | xargs -0 clang-format -i

lint: ## check style and clang-tidy's findings, since LINT_SINCE (4 min to build, 5 to check all)
	@scripts/install-packages build lint
	cmake --preset release
	cmake --build --preset release
	@scripts/lint

package: ## build the Debian package into build/package, and have lintian look at it (4 min)
	@scripts/install-packages build run package
	cmake --preset package
	cmake --build --preset package
	cpack --config build/package/CPackConfig.cmake -G DEB -B build/package
	lintian --fail-on error,warning build/package/*.deb

clean: ## remove everything that was built
	rm -rf build
