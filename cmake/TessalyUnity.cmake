# Several sources of a target compiled as one, which saves reading their headers anew for each: a third of the time of a
# build with sanitizers, where the optimiser has little to do. Only the presets that nobody develops with have it.

# tessaly_local_names(result source) — sets result to the names that the source declares at the left margin: two sources
# that are compiled as one must not both have one of them, which anonymous namespaces else keep apart.
function(tessaly_local_names result source)
    set(names)
    set(name "([A-Za-z0-9_]+)")
    file(STRINGS ${source} lines REGEX "^[A-Za-z]")
    foreach(line IN LISTS lines)
        if(line MATCHES "^(class|struct|enum class|enum) ${name}" OR line MATCHES "^(using) ${name} =" OR
           line MATCHES "^(Q_LOGGING_CATEGORY)\\(${name}" OR
           line MATCHES "^([A-Za-z][^(={;]*)[ *&]${name}(\\[.*\\])?( =|[(;{])")
            list(APPEND names ${CMAKE_MATCH_2})
        endif()
    endforeach()
    set(${result} ${names} PARENT_SCOPE)
endfunction()

# tessaly_unite(name) — with TESSALY_UNITE, compiles up to eight of the target's sources as one; never two that have a name in
# common.
function(tessaly_unite name)
    if(NOT TESSALY_UNITE)
        return()
    endif()
    set(most 8) # more leave a core idle at the end, and gain little
    get_target_property(sources ${name} SOURCES)
    get_target_property(folder ${name} SOURCE_DIR)
    set(count 0)
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${folder} OUTPUT_VARIABLE path)
        if(NOT source MATCHES "\\.cpp$" OR NOT EXISTS ${path})
            continue()
        endif()
        tessaly_local_names(names ${path})
        foreach(candidate RANGE ${count})
            set(group ${candidate})
            set(common ${names_${group}})
            list(REMOVE_ITEM common ${names} "")
            list(LENGTH names_${group} before)
            list(LENGTH common after)
            list(LENGTH sources_${group} size)
            if(before EQUAL after AND size LESS most)
                break()
            endif()
        endforeach()
        list(APPEND sources_${group} ${source})
        list(APPEND names_${group} ${names})
        set_property(SOURCE ${source} DIRECTORY ${folder} PROPERTY UNITY_GROUP ${group})
        if(group EQUAL count)
            math(EXPR count "${count} + 1")
        endif()
    endforeach()
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # Of one source's names by another's; of a class by names that are of its own source alone.
    target_compile_options(${name} PRIVATE -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()
