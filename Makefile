# Set-up and everyday commands. Each target installs the system packages it needs (Debian and
# Ubuntu; see scripts/install-deps.sh), then configures and builds with CMake.
#
#   make run     build and show the bundled samples with ovtool: an acquisition, the browse
#                table of samples/, settings files, label sets, the spectral analysis, an
#                analysis result, the sample instrument, the background library and the
#                sequence
#   make test    build and run every test
#   make bench   Release build of the benchmarks, run with the target ratios
#   make fuzz    run each fuzz target for FUZZ_SECONDS (30) seconds
#   make asan    address and undefined-behaviour sanitizer build, every test
#   make clean   remove the build folders

JOBS        ?= 2
BUILD_DIR   ?= build
ASAN_DIR    ?= build-asan
FUZZ_SECONDS ?= 30
BUILD_TYPE  ?= RelWithDebInfo
SAMPLE      := samples/KL20261104142207_001/ClickInfo.txt
SPECTRAL_SAMPLE := samples/spectral/SpectralAnalysis.xml
FUZZ_TARGETS := $(basename $(notdir $(wildcard fuzz/fuzz_*.cpp)))

# Sanitizer settings of `make asan` (the same as in .ci/run): stop at the first report, leaks
# included. No leak suppressions are needed: LeakSanitizer finds none inside Qt in our runs.
ASAN_ENV := ASAN_OPTIONS=detect_leaks=1:halt_on_error=1:abort_on_error=1:detect_stack_use_after_return=1 \
            UBSAN_OPTIONS=halt_on_error=1:abort_on_error=1:print_stacktrace=1

.PHONY: run test bench fuzz asan clean

# Configures $(BUILD_DIR) once, then builds it.
define build_tree
	test -f $(BUILD_DIR)/CMakeCache.txt || cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE)
	cmake --build $(BUILD_DIR) -j $(JOBS)
endef

run:
	bash scripts/install-deps.sh build
	$(build_tree)
	$(BUILD_DIR)/Tools/ovtool/ovtool show $(SAMPLE)
	$(BUILD_DIR)/Tools/ovtool/ovtool browse samples
	$(BUILD_DIR)/Tools/ovtool/ovtool settings --tag "ROI File" samples/settings/ROISettings.txt
	$(BUILD_DIR)/Tools/ovtool/ovtool settings --filter Custom samples/settings/Presets
	$(BUILD_DIR)/Tools/ovtool/ovtool labels samples/settings/UserLabelNames.txt
	$(BUILD_DIR)/Tools/ovtool/ovtool spectral $(SPECTRAL_SAMPLE)
	$(BUILD_DIR)/Tools/ovtool/ovtool show samples/analysis/KL20261105101544_001_IM01
	OVPARSER_DATA_DIR=$(BUILD_DIR)/ovdata $(BUILD_DIR)/Tools/ovtool/ovtool camera samples/instrument
	OVPARSER_DATA_DIR=$(BUILD_DIR)/ovdata $(BUILD_DIR)/Tools/ovtool/ovtool camera samples/instrument-conflict
	$(BUILD_DIR)/Tools/ovtool/ovtool bkg samples/background
	$(BUILD_DIR)/Tools/ovtool/ovtool bkg samples/background --for samples/KL20261104142207_001
	$(BUILD_DIR)/Tools/ovtool/ovtool sequence samples/sequence/SQ20261106101500

test:
	bash scripts/install-deps.sh build test xml
	$(build_tree)
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

bench:
	bash scripts/install-deps.sh build bench
	bash bench/run.sh

fuzz:
	bash scripts/install-deps.sh build fuzz
	@status=0; for target in $(FUZZ_TARGETS); do \
	    bash fuzz/run.sh $$target $(FUZZ_SECONDS) || status=1; \
	done; exit $$status

asan:
	bash scripts/install-deps.sh build test xml
	cmake -S . -B $(ASAN_DIR) -DCMAKE_BUILD_TYPE=Debug -DOVPARSER_SANITIZE=ON
	$(ASAN_ENV) cmake --build $(ASAN_DIR) -j $(JOBS)
	cd $(ASAN_DIR) && $(ASAN_ENV) ctest --output-on-failure -j $(JOBS)

clean:
	rm -rf $(BUILD_DIR) $(ASAN_DIR) build-bench build-fuzz fuzz/corpus-work
