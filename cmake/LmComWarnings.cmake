# Options for the project's own code (JUCE's sources are compiled separately and quietly):
# warnings, and the sanitizers when LMCOM_SANITIZE is on.
function(lmcom_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wno-missing-field-initializers)
    if(LMCOM_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    endif()
endfunction()
