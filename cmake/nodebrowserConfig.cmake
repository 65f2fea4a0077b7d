# Finds the package of one toolkit generation: NODEBROWSER_QT if that is set, otherwise the one
# that is installed, 5 before 6. Components are handed on.

if(NODEBROWSER_QT)
    set(_nodebrowser_generations ${NODEBROWSER_QT})
else()
    set(_nodebrowser_generations 5 6)
endif()

set(_nodebrowser_required)
set(_nodebrowser_optional)
foreach(_nodebrowser_component IN LISTS nodebrowser_FIND_COMPONENTS)
    if(nodebrowser_FIND_REQUIRED_${_nodebrowser_component})
        list(APPEND _nodebrowser_required ${_nodebrowser_component})
    else()
        list(APPEND _nodebrowser_optional ${_nodebrowser_component})
    endif()
endforeach()

set(nodebrowser_FOUND FALSE)
set(_nodebrowser_reasons)
foreach(_nodebrowser_generation IN LISTS _nodebrowser_generations)
    set(_nodebrowser_package nodebrowser-qt${_nodebrowser_generation})
    find_package(${_nodebrowser_package} QUIET CONFIG
                 COMPONENTS ${_nodebrowser_required} OPTIONAL_COMPONENTS ${_nodebrowser_optional}
                 PATHS ${CMAKE_CURRENT_LIST_DIR}/../${_nodebrowser_package} NO_DEFAULT_PATH)
    if(${_nodebrowser_package}_FOUND)
        set(nodebrowser_FOUND TRUE)
        foreach(_nodebrowser_component IN LISTS nodebrowser_FIND_COMPONENTS)
            set(nodebrowser_${_nodebrowser_component}_FOUND
                ${${_nodebrowser_package}_${_nodebrowser_component}_FOUND})
        endforeach()
        break()
    endif()
    if(${_nodebrowser_package}_NOT_FOUND_MESSAGE)
        list(APPEND _nodebrowser_reasons
            "Qt ${_nodebrowser_generation}: ${${_nodebrowser_package}_NOT_FOUND_MESSAGE}")
    endif()
endforeach()
if(NOT nodebrowser_FOUND)
    list(JOIN _nodebrowser_generations " or " _nodebrowser_generations)
    list(JOIN _nodebrowser_reasons ", " _nodebrowser_reasons)
    if(NOT _nodebrowser_reasons)
        set(_nodebrowser_reasons "it is not installed, or not what it needs")
    endif()
    set(nodebrowser_NOT_FOUND_MESSAGE
        "no node browser for Qt ${_nodebrowser_generations} (${_nodebrowser_reasons})")
endif()
