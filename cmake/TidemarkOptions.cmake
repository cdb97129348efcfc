# What every target of the project is compiled with.
add_library(tidemark_options INTERFACE)
target_compile_options(tidemark_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    # GCC 12 sees overlaps in its own std::string at -O3 that aren't there.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    # It takes several files compiled as one for a header.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>
    $<$<BOOL:${TIDEMARK_WARNINGS_ARE_ERRORS}>:-Werror>)
target_compile_definitions(tidemark_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(tidemark_options INTERFACE ${PROJECT_SOURCE_DIR}/Src)

set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O3 -g1 -DNDEBUG")

if(TIDEMARK_SANITIZE)
    add_compile_options(-fsanitize=${TIDEMARK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -O1 -g1)
    add_link_options(-fsanitize=${TIDEMARK_SANITIZE})
    # For what computes little: with the sanitizers' checks inside, optimising takes three times as long as the rest.
    set(TIDEMARK_QUICKLY_COMPILED -O0)
endif()
if(TIDEMARK_FUZZ)
    # What is fuzzed tells the fuzzer where it has been.
    set(TIDEMARK_FUZZED_CODE -fsanitize=fuzzer-no-link)
endif()
