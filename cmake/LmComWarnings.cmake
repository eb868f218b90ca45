# Warnings for the project's own code (JUCE's sources are compiled separately and quietly).
function(lmcom_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wno-missing-field-initializers)
endfunction()
