# Renders the drawings of this folder to PNG, at their own size and at twice that.

find_program(RSVG_CONVERT rsvg-convert REQUIRED)
file(GLOB drawings ${CMAKE_CURRENT_LIST_DIR}/*.svg)
foreach(drawing IN LISTS drawings)
    string(REGEX REPLACE "\\.svg$" "" stem ${drawing})
    execute_process(COMMAND ${RSVG_CONVERT} ${drawing} -o ${stem}.png COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${RSVG_CONVERT} -z 2 ${drawing} -o ${stem}@2x.png
                    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
