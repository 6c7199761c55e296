# The commands of the README. Each installs what it needs (as root, on Debian), configures, builds and runs.
build_packages = g++ cmake ninja-build pkg-config
tool_packages = libpng-dev libjpeg-dev libcli11-dev libtbb-dev libkissfft-dev
test_packages = libgtest-dev
win32_packages = g++-mingw-w64-i686-posix googletest
bench_packages = libbenchmark-dev liblcms2-dev libcupsfilters-dev libcups2-dev libgutenprint-dev

.PHONY: demo test win32 bench bench32 dist clean

demo: # prints the built-in sample page and shows the paths of the pictures
	@scripts/packages $(build_packages) $(tool_packages)
	@cmake --preset release -DVRK_TOOLS=ON -DVRK_TESTS=OFF -DVRK_BENCH=OFF >/dev/null
	@cmake --build --preset release
	@build/release/tools/vrk demo -o out/demo

test: # builds everything but the benchmarks and runs all tests
	@scripts/packages $(build_packages) $(tool_packages) $(test_packages)
	@cmake --preset release -DVRK_TOOLS=ON -DVRK_TESTS=ON -DVRK_BENCH=OFF >/dev/null
	@cmake --build --preset release
	@ctest --preset release

win32: # builds the DLL for 32-bit Windows and runs its tests under Wine
	@scripts/packages $(build_packages) $(win32_packages)
	@cmake --preset win32 >/dev/null
	@cmake --build --preset win32
	@ctest --preset win32

bench: # speed of every stage, beside other libraries where Debian has them; ARGS=... goes to the benchmark program
	@scripts/packages $(build_packages) $(bench_packages)
	@cmake --preset release -DVRK_TOOLS=OFF -DVRK_TESTS=OFF -DVRK_BENCH=ON >/dev/null
	@cmake --build --preset release
	@build/release/bench/vrk_bench $(ARGS)

bench32: # speed of every stage in the DLL beside the 64-bit library, the lowest ratio last
	@scripts/packages $(build_packages) $(test_packages) $(win32_packages)
	@cmake --preset release -DVRK_TOOLS=OFF -DVRK_TESTS=ON -DVRK_BENCH=OFF >/dev/null
	@cmake --preset win32 -DVRK_TESTS=ON >/dev/null
	@cmake --build --preset release --target vrk_digest
	@cmake --build --preset win32 --target vrk vrk_digest
	@scripts/compare-speed build/win32 build/release

dist: # packs out/dist: a zip for 32-bit Windows, a tar.gz and a Debian package for Linux
	@scripts/packages $(build_packages) $(tool_packages) $(win32_packages) dpkg-dev
	@cmake --preset release -DVRK_TOOLS=ON -DVRK_TESTS=OFF -DVRK_BENCH=OFF >/dev/null
	@cmake --preset win32 -DVRK_TESTS=OFF >/dev/null
	@cmake --build --preset release
	@cmake --build --preset win32
	@cpack --config build/release/CPackConfig.cmake -B out/dist
	@cpack --config build/win32/CPackConfig.cmake -B out/dist

clean:
	rm -rf build out
