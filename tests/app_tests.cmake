# Included by CMakeLists.txt beside it when the program is built.
find_package(Qt6 REQUIRED COMPONENTS Test Widgets)

# Fakes for the application: a main thread and a pool by hand, a scripted panel, a private window.
add_library(gruk_app_test_support STATIC
    support/accessible_tree.cpp
    support/fake_tray.cpp
    support/lost_midway.cpp
    support/lost_moments.cpp
    support/lost_operations.cpp
    support/lost_ways.cpp
    support/model_house.cpp
    support/patrol_page_house.cpp
    support/screen_house.cpp)
set_target_properties(gruk_app_test_support PROPERTIES AUTOMOC ON)
target_link_libraries(gruk_app_test_support PUBLIC gruk_app gruk_test_support Qt6::Test)
gruk_compile_quickly(gruk_app_test_support)
gruk_precompile(gruk_app_test_support ${test_headers}
    <QtCore> <QtGui> <QtWidgets> <QTest> <QCoro/QCoroTask>)

gruk_add_tests(gruk_app_tests
    app/desktop/activation_test.cpp
    app/desktop/desktop_appearance_test.cpp
    app/desktop/file_dialog_open_panel_test.cpp
    app/desktop/file_revealer_test.cpp
    app/desktop/second_start_test.cpp
    app/desktop/session_end_test.cpp
    app/desktop/single_instance_test.cpp
    app/desktop/termination_signals_test.cpp
    app/desktop/tray_item_test.cpp
    app/main.cpp
    app/model/app_model_access_lost_midway_test.cpp
    app/model/app_model_automation_test.cpp
    app/model/app_model_grant_lost_midway_test.cpp
    app/model/app_model_grants_test.cpp
    app/model/app_model_guarded_home_test.cpp
    app/model/app_model_history_test.cpp
    app/model/app_model_look_lost_midway_test.cpp
    app/model/app_model_lost_access_test.cpp
    app/model/app_model_patrol_lost_midway_test.cpp
    app/model/app_model_memory_test.cpp
    app/model/app_model_pauses_test.cpp
    app/model/app_model_patrol_test.cpp
    app/model/app_model_renaming_test.cpp
    app/model/app_model_territories_test.cpp
    app/model/app_model_renewal_test.cpp
    app/model/app_model_tidy_test.cpp
    app/model/app_model_trash_test.cpp
    app/model/background_test.cpp
    app/model/realm_figures_test.cpp
    app/screens/accessibility_test.cpp
    app/screens/all_screens_test.cpp
    app/screens/automations_section_test.cpp
    app/screens/breadcrumb_geometry_test.cpp
    app/screens/browse_renewal_test.cpp
    app/screens/browse_selection_test.cpp
    app/screens/browse_sort_test.cpp
    app/screens/confirmation_dialog_test.cpp
    app/screens/desktop_tidy_section_test.cpp
    app/screens/dropped_folders_test.cpp
    app/screens/file_kind_copy_test.cpp
    app/screens/file_table_view_test.cpp
    app/screens/findings_geometry_test.cpp
    app/screens/findings_list_test.cpp
    app/screens/findings_section_test.cpp
    app/screens/folder_name_test.cpp
    app/screens/gruk_app_test.cpp
    app/screens/key_press_test.cpp
    app/screens/long_names_test.cpp
    app/screens/main_window_focus_test.cpp
    app/screens/main_window_test.cpp
    app/screens/memory_card_test.cpp
    app/screens/menu_bar_entries_test.cpp
    app/screens/menu_bar_view_test.cpp
    app/screens/message_strip_test.cpp
    app/screens/messages_section_test.cpp
    app/screens/organise_sheet_test.cpp
    app/screens/patrol_page_actions_test.cpp
    app/screens/patrol_page_focus_test.cpp
    app/screens/patrol_page_layout_test.cpp
    app/screens/patrol_page_test.cpp
    app/screens/patrol_text_test.cpp
    app/screens/realm_automation_card_test.cpp
    app/screens/realm_row_test.cpp
    app/screens/refusal_note_test.cpp
    app/screens/scan_node_model_test.cpp
    app/screens/scan_node_text_test.cpp
    app/screens/settings_view_test.cpp
    app/screens/shield_editor_test.cpp
    app/screens/shield_view_test.cpp
    app/screens/sidebar_test.cpp
    app/screens/status_banner_test.cpp
    app/screens/symbols_test.cpp
    app/screens/territories_view_test.cpp
    app/screens/territory_geometry_test.cpp
    app/screens/territory_grid_test.cpp
    app/screens/territory_labels_test.cpp
    app/screens/territory_map_view_test.cpp
    app/screens/territory_room_test.cpp
    app/screens/undo_offer_test.cpp
    app/screens/unseen_places_test.cpp
    app/screens/walkthrough_view_test.cpp
    app/screens/welcome_page_test.cpp
    app/screens/window_memory_test.cpp
    app/screens/wrapped_label_test.cpp
    app/theme/art_test.cpp
    app/theme/card_painter_test.cpp
    app/theme/contrast_test.cpp
    app/theme/controls_test.cpp
    app/theme/drawing_test.cpp
    app/theme/focus_ring_test.cpp
    app/theme/house_style_test.cpp
    app/theme/icons_test.cpp
    app/theme/land_geometry_test.cpp
    app/theme/land_text_test.cpp
    app/theme/palette_test.cpp
    app/theme/paper_backdrop_test.cpp
    app/theme/popover_test.cpp
    app/theme/sheet_test.cpp
    app/theme/segmented_control_test.cpp
    app/theme/shield_geometry_test.cpp
    app/theme/tab_order_test.cpp
    app/theme/tactile_press_test.cpp
    app/theme/text_test.cpp
    app/theme/theme_test.cpp
    app/tour/tree_copy_test.cpp)
target_link_libraries(gruk_app_tests PRIVATE gruk_app_test_support gruk_tour_parts)
gruk_precompile(gruk_app_tests REUSE_FROM gruk_app_test_support)
# Some start the program itself.
add_dependencies(gruk_app_tests gruk)
target_compile_definitions(gruk_app_tests PRIVATE
    GRUK_PACKAGING="${PROJECT_SOURCE_DIR}/packaging"
    GRUK_PROGRAM="$<TARGET_FILE:gruk>")
# They look up which screens and buttons there are.
set_source_files_properties(app/screens/all_screens_test.cpp app/screens/key_press_test.cpp PROPERTIES
    COMPILE_DEFINITIONS GRUK_SOURCE_DIRECTORY="${PROJECT_SOURCE_DIR}")

# Those with threads of their own.
gruk_add_tests(gruk_app_thread_tests LABEL threads
    app/desktop/qt_run_loop_test.cpp
    app/main.cpp
    app/model/app_model_live_test.cpp
    app/model/app_model_soak_test.cpp)
target_link_libraries(gruk_app_thread_tests PRIVATE gruk_app_test_support)
gruk_precompile(gruk_app_thread_tests REUSE_FROM gruk_app_test_support)

# A user at the real window, on real files and threads.
gruk_add_tests(gruk_end_to_end_tests
    app/end_to_end/end_to_end_test.cpp
    app/end_to_end/home_on_guard_test.cpp
    app/main.cpp
    support/disk_count.cpp
    support/made_home.cpp
    support/running_program.cpp
    support/window_user.cpp)
target_link_libraries(gruk_end_to_end_tests PRIVATE gruk_app_test_support)
gruk_precompile(gruk_end_to_end_tests REUSE_FROM gruk_app_test_support)

# Every picture of the tour is written, and none is blank.
add_test(NAME Tour.writesEveryPicture
    COMMAND gruk_tour --out ${CMAKE_CURRENT_BINARY_DIR}/tour)
# Of a folder in which nothing is to be found, and of one with nothing in it.
add_test(NAME Tour.goesThroughAnyFolder
    COMMAND gruk_tour --out ${CMAKE_CURRENT_BINARY_DIR}/folder-tour ${PROJECT_SOURCE_DIR}/docs)
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/nothing)
add_test(NAME Tour.goesThroughAFolderWithNothingInIt
    COMMAND gruk_tour --out ${CMAKE_CURRENT_BINARY_DIR}/nothing-tour
        ${CMAKE_CURRENT_BINARY_DIR}/nothing)
add_test(NAME Tour.tellsThatTheFolderNamedIsNone
    COMMAND gruk_tour --out ${CMAKE_CURRENT_BINARY_DIR}/no-tour /no/such/folder)
set_tests_properties(Tour.tellsThatTheFolderNamedIsNone PROPERTIES
    PASS_REGULAR_EXPRESSION "gruk_tour: /no/such/folder is not a folder that can be opened: No such")
# Without a display the program ends with a sentence.
add_test(NAME Program.endsWithASentenceWithoutADisplay COMMAND gruk)
set_tests_properties(Program.endsWithASentenceWithoutADisplay PROPERTIES
    ENVIRONMENT "DISPLAY=;WAYLAND_DISPLAY=;QT_QPA_PLATFORM=xcb"
    PASS_REGULAR_EXPRESSION "^Gruk needs a display, and found none that it can use\\.\n$")
add_test(NAME Program.tellsItsVersionWithoutADisplay COMMAND gruk --version)
set_tests_properties(Program.tellsItsVersionWithoutADisplay PROPERTIES
    ENVIRONMENT "DISPLAY=;WAYLAND_DISPLAY=;QT_QPA_PLATFORM=xcb"
    PASS_REGULAR_EXPRESSION "Gruk ${PROJECT_VERSION}")

# What the desktop is told about the program, and that all of it is installed.
find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
if(DESKTOP_FILE_VALIDATE)
    add_test(NAME Packaging.theDesktopEntryIsValid
        COMMAND ${DESKTOP_FILE_VALIDATE}
            ${PROJECT_SOURCE_DIR}/packaging/io.github.gruk.Gruk.desktop)
endif()
find_program(APPSTREAMCLI appstreamcli)
if(APPSTREAMCLI)
    add_test(NAME Packaging.theMetadataIsValid
        COMMAND ${APPSTREAMCLI} validate --no-net
            ${PROJECT_SOURCE_DIR}/packaging/io.github.gruk.Gruk.metainfo.xml)
endif()
add_test(NAME Packaging.installsTheProgramWithItsIconsAndEntries
    COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR}
        -DFOLDER=${CMAKE_CURRENT_BINARY_DIR}/installed
        -P ${CMAKE_CURRENT_SOURCE_DIR}/repository/install_check.cmake)

# What holds for the repository itself: who may include what, and that every test is in a program.
gruk_add_tests(gruk_repository_tests
    repository/documents_test.cpp
    repository/own_names.cpp
    repository/own_names_test.cpp
    repository/repository_test.cpp
    repository/source_file.cpp
    repository/walls.cpp
    repository/walls_test.cpp)
gruk_precompile(gruk_repository_tests REUSE_FROM gruk_promise_tests)
get_target_property(widget_headers Qt6::Widgets INTERFACE_INCLUDE_DIRECTORIES)
list(FILTER widget_headers INCLUDE REGEX "/QtWidgets$")
target_compile_definitions(gruk_repository_tests PRIVATE
    GRUK_SOURCE_DIRECTORY="${PROJECT_SOURCE_DIR}"
    GRUK_WIDGET_HEADERS="${widget_headers}")
add_test(NAME Repository.refusesATestFileThatIsInNoProgram
    COMMAND ${CMAKE_COMMAND} -DMODULE=${PROJECT_SOURCE_DIR}/cmake/RequireEveryTest.cmake
        -DFOLDER=${CMAKE_CURRENT_BINARY_DIR}/require_every_test
        -P ${CMAKE_CURRENT_SOURCE_DIR}/repository/require_every_test_check.cmake)

include(${PROJECT_SOURCE_DIR}/cmake/RequireEveryTest.cmake)
gruk_require_every_test(${CMAKE_CURRENT_SOURCE_DIR})
