# Compiler settings that every target of this tree shares.

add_library(dsp_options INTERFACE)
target_compile_features(dsp_options INTERFACE cxx_std_17)
target_compile_options(dsp_options INTERFACE -Wall -Wextra -Wconversion -Wshadow)
if(DSP_WERROR)
  target_compile_options(dsp_options INTERFACE -Werror)
endif()
if(DSP_SANITIZE)
  target_compile_options(dsp_options INTERFACE -fsanitize=${DSP_SANITIZE} -fno-sanitize-recover=all
                                               -fno-omit-frame-pointer -g)
  target_link_options(dsp_options INTERFACE -fsanitize=${DSP_SANITIZE})
endif()
