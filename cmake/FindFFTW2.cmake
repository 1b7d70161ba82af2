# FFTW 2.1.5 in double precision, as Debian's fftw-dev installs it: the real
# transforms live in librfftw on top of libfftw.
find_path(FFTW2_INCLUDE_DIR rfftw.h)
find_library(FFTW2_RFFTW_LIBRARY NAMES rfftw drfftw)
find_library(FFTW2_FFTW_LIBRARY NAMES fftw dfftw)
if(NOT FFTW2_INCLUDE_DIR OR NOT FFTW2_RFFTW_LIBRARY OR NOT FFTW2_FFTW_LIBRARY)
    message(FATAL_ERROR "FFTW 2 (double precision) not found: run 'make deps' (Debian package fftw-dev)")
endif()
if(NOT TARGET FFTW2::rfftw)
    add_library(FFTW2::rfftw INTERFACE IMPORTED)
    set_target_properties(FFTW2::rfftw PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${FFTW2_INCLUDE_DIR}"
        INTERFACE_LINK_LIBRARIES "${FFTW2_RFFTW_LIBRARY};${FFTW2_FFTW_LIBRARY};m")
endif()
