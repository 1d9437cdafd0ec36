# The screenshot fills the board from the demo adapter's simulated estate.
target_sources(test_ui_${name} PRIVATE ${CMAKE_SOURCE_DIR}/plugins/ZNBA_Demo/DemoEstate.cpp)
target_include_directories(test_ui_${name} PRIVATE ${CMAKE_SOURCE_DIR}/plugins/ZNBA_Demo)
