# The commands of the README, and the stages of .ci/run. Each installs what it needs (as root, on Debian), configures,
# builds and runs.
build_packages = g++ cmake ninja-build pkg-config
tool_packages = libpng-dev libjpeg-dev libcli11-dev libtbb-dev libkissfft-dev nlohmann-json3-dev liblcms2-dev \
  libzimg-dev libexif-dev libtiff-dev libwebp-dev libcups2-dev libseccomp-dev
test_packages = libgtest-dev
printer_app_packages = libpappl-dev
queue_packages = $(printer_app_packages) cups-ipp-utils curl ghostscript cups cups-filters cups-ppdc python3 \
  chromium chromium-driver python3-selenium
dll_packages = g++-mingw-w64-i686-posix llvm-14
win32_packages = $(dll_packages) googletest clang-14 lld-14
profile_packages = argyll icc-profiles-free libgs-common
proof_packages = python3-numpy python3-pil python3-scipy python3-skimage
aarch64_packages = g++-aarch64-linux-gnu qemu-user googletest
i686_packages = g++-12-multilib googletest
coverage_packages = clang-14 clang llvm-14 llvm
fuzz_packages = clang cmake ninja-build
bench_packages = libbenchmark-dev liblcms2-dev libcupsfilters-dev libcups2-dev libgutenprint-dev
search_packages = libpagmo-dev
program_peers = argyll ffmpeg
build = cmake --preset $(1) $(CONFIGURE) >/dev/null && cmake --build --preset $(1)

.PHONY: demo test test-queue sanitize fuzz tsan win32 aarch64 i686 coverage compare benchmarks bench bench-rows bench-programs compare-halftones speed bench32 check-link check-proof check-calibrate search dist check-dist check-reproducible check-scripts tidy check-format clean

demo: # prints the built-in sample page and shows the paths of the pictures
	@scripts/packages $(build_packages) $(tool_packages)
	@$(call build,program)
	@build/program/tools/vrk demo -o out/demo

test: # builds the library and the program and runs all tests
	@scripts/packages $(build_packages) $(tool_packages) $(test_packages)
	@$(call build,release)
	@ctest --preset release

test-queue: # runs the tests that need programs of a print system
	@scripts/packages $(build_packages) $(tool_packages) $(test_packages) $(queue_packages)
	@$(call build,queue)
	@ctest --preset queue

sanitize: # the same under the address and undefined-behaviour sanitizers
	@scripts/packages $(build_packages) $(tool_packages) $(test_packages)
	@$(call build,sanitize)
	@ctest --preset sanitize

tsan: # prints by many threads under the thread sanitizer; `make test` has what shows that of the library
	@scripts/packages $(build_packages) $(tool_packages)
	@$(call build,tsan) --target vrk
	@tests/tools/print/threads_test.sh $(CURDIR)/build/tsan/tools/vrk

SECONDS = 60
fuzz: # fuzzes every target for SECONDS, two at a time on each core, from the kept inputs; TARGETS=... some; out/fuzz has what was found
	@scripts/packages $(fuzz_packages)
	@$(call build,fuzz)
	@scripts/fuzz build/fuzz/fuzz $(SECONDS) out/fuzz $(TARGETS)

win32: # builds the DLL for 32-bit Windows and runs its tests under Wine
	@scripts/packages $(build_packages) $(win32_packages)
	@$(call build,win32)
	@ctest --preset win32

aarch64: # builds the library for 64-bit ARM, without the kernels that are for x86 alone, and runs its tests under qemu
	@scripts/packages $(build_packages) $(aarch64_packages)
	@$(call build,aarch64)
	@ctest --preset aarch64

i686: # builds the library for 32-bit Linux and runs its tests and kept inputs under the sanitizers
	@scripts/packages $(build_packages) $(i686_packages)
	@$(call build,i686)
	@ctest --preset i686

coverage_tests = build/coverage/tests/vrk_tests --gtest_filter
kept_inputs = $(wildcard $(patsubst fuzz/library/%.cpp,fuzz/corpus/%.tar,$(wildcard fuzz/library/*.cpp)))
coverage: # which branches of the library its tests and the kept inputs leave out; takes some minutes
	@scripts/packages $(build_packages) $(test_packages) $(coverage_packages)
	@$(call build,coverage) --target vrk_tests vrk_replay
	@scripts/branches build/coverage "$(coverage_tests)=csc*:ed*" "$(coverage_tests)=-csc*:ed*" \
	  $(foreach tar,$(kept_inputs),"build/coverage/fuzz/vrk_replay $(basename $(notdir $(tar))) $(tar)")

BUILDS = build/release build/sanitize build/win32
compare: # the same bytes from the builds that the three targets above made
	@scripts/compare-builds $(BUILDS)

benchmarks: # builds the benchmark programs; PHOTOS=DIR with the program's readers
	@scripts/packages $(build_packages) $(bench_packages) $(if $(PHOTOS),$(tool_packages))
	@cmake --preset bench $(if $(PHOTOS),-DVRK_TOOLS=ON) >/dev/null && cmake --build --preset bench

bench: benchmarks # speed of every stage, beside other libraries where Debian has them, then bench-rows; ARGS=... to the first
	@build/bench/bench/vrk_bench $(ARGS)
	@$(bench_rows)

bench-rows: benchmarks # kernel rows beside those of the commit BEFORE, in turns; ROWS=... goes to the program
	@$(bench_rows)

BEFORE = 874abaf
bench_rows = before=$$(scripts/library-of $(BEFORE)) && build/bench/bench/vrk_paired \
  $${before:+--before "$$before"} $(if $(PHOTOS),--pictures "$(PHOTOS)") $(ROWS)

bench-programs: benchmarks # one page through a colour grid by whole programs
	@scripts/packages $(program_peers)
	@scripts/compare-programs build/bench

compare-halftones: benchmarks # noise and colours of the kit's filters and matrices beside EvenTone, on PHOTOS=DIR or files
	@scripts/packages $(tool_packages)
	@$(call build,program)
	@scripts/compare-halftones build/program/tools/vrk build/bench/bench/vrk_eventone out/halftones \
	  $(if $(wildcard $(PHOTOS)/.),$(wildcard $(addprefix $(PHOTOS)/*.,png jpg jpeg tif tiff ppm)),$(PHOTOS))

speed: benchmarks # measures what docs/speed.md shows, and writes it there; takes a quarter of an hour
	@scripts/packages $(program_peers) gnuplot-nox
	@scripts/measure-speed $(BEFORE) $(ROWS)

bench32: # speed of every stage in the DLL beside the 64-bit library, the lowest ratio last
	@scripts/packages $(build_packages) $(tool_packages) $(test_packages) $(win32_packages)
	@$(call build,release) --target vrk_digest
	@$(call build,win32) --target libvrk vrk_digest
	@scripts/compare-speed build/win32 build/release

out/press.icc: # a press profile from the characterisation FOGRA39L; takes a minute or two
	@scripts/packages $(profile_packages)
	@mkdir -p out
	@cp /usr/share/color/icc/FOGRA39L.ti3 out/press.ti3
	@cd out && colprof -qm -S /usr/share/color/argyll/ref/sRGB.icm -cmt -dpp -D press press >press.log

check-link: out/press.icc # how close the tables of `vrk link` come to two press profiles, beside what they have to reach
	@scripts/packages $(build_packages) $(tool_packages) $(profile_packages)
	@$(call build,program)
	@scripts/check-link build/program/tools/vrk out/press.icc out/check-link

PICTURES = docs/page.jpg
check-proof: out/press.icc # how close previews through a press profile come to soft proofs; PICTURES=files or a directory
	@scripts/packages $(build_packages) $(tool_packages) $(proof_packages)
	@$(call build,program)
	@scripts/check-proof build/program/tools/vrk out/press.icc out/check-proof $(PICTURES)

check-calibrate: out/press.icc # how even ramps become, by a press profile, with the curves of `vrk calibrate`
	@scripts/packages $(build_packages) $(tool_packages) $(profile_packages)
	@$(call build,program)
	@scripts/check-calibrate build/program/tools/vrk out/press.icc out/check-calibrate

search: # looks for better error filters; PICTURES=photographs, SEARCH=options
	@scripts/packages $(build_packages) $(tool_packages) $(search_packages)
	@$(call build,search)
	@build/search/kit/search/vrk_search $(SEARCH) $(PICTURES)

# The time that packages and man pages bear: that of the last commit, whenever they are made.
export SOURCE_DATE_EPOCH ?= $(shell git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md)
dist: # packs out/dist: a zip for 32-bit Windows, a tar.gz and two Debian packages for Linux
	@scripts/packages $(build_packages) $(tool_packages) $(test_packages) $(printer_app_packages) $(dll_packages) \
	  dpkg-dev file help2man
	@$(call build,queue)
	@$(call build,dll)
	@umask 022 && TZ=UTC cpack --config build/release/CPackConfig.cmake -B out/dist
	@umask 022 && TZ=UTC cpack --config build/dll/CPackConfig.cmake -B out/dist

check-reproducible: # packs twice, in other folders and at other times: the same bytes? Takes as long as two builds of everything
	@scripts/check-reproducible

check-dist: dist # unpacks out/dist and builds and runs programs with what is there
	@scripts/packages $(win32_packages)
	@tests/dist_test.sh out/dist

check-scripts: # fails when shellcheck finds fault with a shell script; .shellcheckrc says what it is not asked
	@scripts/packages shellcheck
	@git ls-files '*.sh' .ci scripts | xargs grep -lE '^#!.*sh$$|^# shellcheck shell=' | xargs shellcheck

TIDY = src kit
tidy: # what clang-tidy and clang's analyzer say, as .clang-tidy asks them; TIDY=... folders or files. All takes half an hour
	@scripts/packages clang-tidy-14 $(build_packages) $(tool_packages)
	@cmake --preset program >/dev/null
	@run-clang-tidy-14 -p build/program -quiet -extra-arg=-Wno-ignored-optimization-argument \
	  -extra-arg=-Wno-unknown-warning-option $(addprefix $(CURDIR)/,$(TIDY))

check-format: # fails when a source file is not formatted as .clang-format says
	@scripts/packages clang-format-14
	@git ls-files '*.h' '*.c' '*.cpp' | xargs clang-format-14 --dry-run -Werror

clean:
	rm -rf build out
