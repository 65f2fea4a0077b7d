# Finds the package of one toolkit generation: NODEBROWSER_QT if that is set, otherwise the one
# that is installed, 5 before 6.

if(NODEBROWSER_QT)
    set(_nodebrowser_generations ${NODEBROWSER_QT})
else()
    set(_nodebrowser_generations 5 6)
endif()

set(nodebrowser_FOUND FALSE)
foreach(_nodebrowser_generation IN LISTS _nodebrowser_generations)
    set(_nodebrowser_package nodebrowser-qt${_nodebrowser_generation})
    find_package(${_nodebrowser_package} QUIET CONFIG
                 PATHS ${CMAKE_CURRENT_LIST_DIR}/../${_nodebrowser_package} NO_DEFAULT_PATH)
    if(${_nodebrowser_package}_FOUND)
        set(nodebrowser_FOUND TRUE)
        break()
    endif()
endforeach()
if(NOT nodebrowser_FOUND)
    list(JOIN _nodebrowser_generations " or " _nodebrowser_generations)
    set(nodebrowser_NOT_FOUND_MESSAGE
        "no node browser is installed for Qt ${_nodebrowser_generations}, or not what it needs")
endif()
