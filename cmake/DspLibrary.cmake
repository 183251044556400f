# The library. Every dsp/<family>/*.cpp belongs to it; a file named *.isa.cpp holds kernels and is compiled once per
# instruction set, into a namespace named by DSP_ISA (see dsp/simd/isa.h).

include(GNUInstallDirs)
file(GLOB dsp_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/dsp/*/*.cpp)
set(dsp_kernels ${dsp_sources})
list(FILTER dsp_kernels INCLUDE REGEX "\\.isa\\.cpp$")
list(FILTER dsp_sources EXCLUDE REGEX "\\.isa\\.cpp$")

# The hardening of Linux distributions, without a measurable cost. Left out with the sanitizers, which check more, and
# with MinGW, where it would need another library.
if(DSP_HARDEN AND UNIX AND NOT APPLE AND NOT DSP_SANITIZE)
  set(dsp_hardened_compile -fstack-protector-strong $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
                           $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  set(dsp_hardened_link -Wl,-z,relro -Wl,-z,now)
endif()

function(dsp_headers target)
  target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                                 $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endfunction()

function(dsp_object_library name)
  add_library(${name} OBJECT ${ARGN})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON CXX_EXTENSIONS OFF)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_definitions(${name} PRIVATE DSP_BUILDING $<$<IN_LIST:avx2,${dsp_isas}>:DSP_ISA_X86>)
  # Results must not depend on the processor, so no contraction by the compiler.
  target_compile_options(${name} PRIVATE -ffp-contract=off -fno-math-errno -fno-trapping-math ${dsp_hardened_compile})
  target_link_libraries(${name} PRIVATE dsp_options)
endfunction()

# These kernels may fuse products with sums: they promise their results to rounding only.
set(dsp_fused_kernels ${dsp_kernels})
list(FILTER dsp_fused_kernels INCLUDE REGEX "/dsp/(fft/|filter/fir_|resample/)")
set_source_files_properties(${dsp_fused_kernels} PROPERTIES COMPILE_OPTIONS -ffp-contract=fast)
# These are written in vectors where that pays. The compiler's own vectorisation doubles the time of short transforms.
set_property(SOURCE ${PROJECT_SOURCE_DIR}/dsp/fft/fft_kernels.isa.cpp ${PROJECT_SOURCE_DIR}/dsp/fft/mixed_kernels.isa.cpp
  APPEND PROPERTY COMPILE_OPTIONS -fno-tree-vectorize -fno-tree-slp-vectorize)
# GCC would make a copy of each loop, and of the butterfly in it, for every kind of result.
set_property(SOURCE ${PROJECT_SOURCE_DIR}/dsp/fft/mixed_kernels.isa.cpp APPEND PROPERTY
             COMPILE_OPTIONS $<$<CXX_COMPILER_ID:GNU>:-fno-unswitch-loops>)

set(dsp_isas baseline)
if(DSP_ISA_DISPATCH AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
  list(APPEND dsp_isas avx2 avx512)
endif()
# Kernels are optimised for speed. The rest is optimised for size and vectorised where that is cheap; so are the baseline
# kernels on x86-64, where nearly every processor has a better set. This holds for every build type but Debug and
# MinSizeRel, also for the empty one of a project that adds this tree; sanitizers keep the level of their build type.
if(DSP_SANITIZE)
  set(dsp_optimised $<CONFIG:Release>)
else()
  set(dsp_optimised $<NOT:$<OR:$<CONFIG:Debug>,$<CONFIG:MinSizeRel>>>)
endif()
set(dsp_for_speed $<${dsp_optimised}:-O3>)
set(dsp_for_size "$<${dsp_optimised}:-O2;-ftree-vectorize>" $<$<CXX_COMPILER_ID:GNU>:-fvect-cost-model=dynamic>)
set(dsp_isa_flags_baseline ${dsp_for_speed})
if("avx2" IN_LIST dsp_isas)
  set(dsp_isa_flags_baseline ${dsp_for_size})
endif()
# In WebAssembly only kernels use vectors, and not those of matrices, which Clang 14 compiles wrongly with them.
if(EMSCRIPTEN)
  list(APPEND dsp_isa_flags_baseline -msimd128)
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/dsp/rf/matrix_kernels.isa.cpp APPEND PROPERTY COMPILE_OPTIONS -mno-simd128)
endif()
set(dsp_isa_flags_avx2 ${dsp_for_speed} -mavx2 -mfma)
set(dsp_isa_flags_avx512 ${dsp_for_speed} -mavx512f -mavx512dq -mavx512vl -mavx512bw -mfma -mprefer-vector-width=512)

dsp_object_library(dsp_common ${dsp_sources})
target_compile_options(dsp_common PRIVATE ${dsp_for_size})
set(dsp_objects $<TARGET_OBJECTS:dsp_common>)
foreach(isa IN LISTS dsp_isas)
  if(dsp_kernels)
    dsp_object_library(dsp_kernels_${isa} ${dsp_kernels})
    target_compile_options(dsp_kernels_${isa} PRIVATE ${dsp_isa_flags_${isa}})
    target_compile_definitions(dsp_kernels_${isa} PRIVATE DSP_ISA=${isa})
    # Each kernel file is tuned by itself.
    set_target_properties(dsp_kernels_${isa} PROPERTIES UNITY_BUILD OFF)
    list(APPEND dsp_objects $<TARGET_OBJECTS:dsp_kernels_${isa}>)
  endif()
endforeach()

# The archive. Tests reach internals through it, and put a failing heap in place of heap.cpp. A C project that links it
# needs the C++ runtime and the mathematics too.
add_library(dsp_static STATIC ${dsp_objects})
add_library(dsp::dsp_static ALIAS dsp_static)
set_target_properties(dsp_static PROPERTIES OUTPUT_NAME dsp LINKER_LANGUAGE CXX)
dsp_headers(dsp_static)
target_compile_definitions(dsp_static INTERFACE DSP_STATIC)
set(dsp_runtime ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(FILTER dsp_runtime INCLUDE REGEX "^(std)?c\\+\\+(abi)?$|^m$")
list(REMOVE_DUPLICATES dsp_runtime)
target_link_libraries(dsp_static INTERFACE ${dsp_runtime})

set(dsp_shared ON)
if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
  set(dsp_shared OFF)
  add_library(dsp INTERFACE)
  target_link_libraries(dsp INTERFACE dsp_static)
else()
  add_library(dsp SHARED ${dsp_objects})
  set_target_properties(dsp PROPERTIES VERSION ${DSP_RELEASE} SOVERSION ${DSP_ABI} LINKER_LANGUAGE CXX)
  dsp_headers(dsp)
  target_link_libraries(dsp PRIVATE $<BUILD_INTERFACE:dsp_options>)
  if(UNIX AND NOT APPLE)
    # The version script also hides std:: template instances, which visibility flags do not; -Bsymbolic binds
    # calls inside the library to its own routines even when a program defines an `invert` of its own.
    set(dsp_exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(dsp PRIVATE -Wl,--version-script=${dsp_exports} -Wl,-Bsymbolic ${dsp_hardened_link})
    if(NOT DSP_SANITIZE)
      target_link_options(dsp PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(dsp PROPERTIES LINK_DEPENDS ${dsp_exports})
  endif()
endif()
add_library(dsp::dsp ALIAS dsp)
