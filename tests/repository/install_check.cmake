# Installs the build tree BUILD into FOLDER and fails unless all that a desktop looks for is there.
file(REMOVE_RECURSE ${FOLDER})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}
    OUTPUT_QUIET RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "The installation failed.")
endif()
set(id io.github.gruk.Gruk)
foreach(file
        bin/gruk
        share/applications/${id}.desktop
        share/icons/hicolor/48x48/apps/${id}.png
        share/icons/hicolor/128x128/apps/${id}.png
        share/icons/hicolor/scalable/apps/${id}.svg
        share/icons/hicolor/symbolic/apps/${id}-symbolic.svg
        share/metainfo/${id}.metainfo.xml)
    if(NOT EXISTS ${FOLDER}/${file})
        message(FATAL_ERROR "${file} is not installed.")
    endif()
endforeach()
