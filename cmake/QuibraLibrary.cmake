# Precompiled headers: the few that nearly every file of a kind includes; anything larger costs more than it saves. No path
# of the tree is named, so that a compiler cache serves all of its checkouts.
set(QUIBRA_LOGIC_HEADERS <QList> <QString> <QStringList> <QtGlobal> <array> <functional> <memory> <vector>)
set(QUIBRA_WINDOW_HEADERS ${QUIBRA_LOGIC_HEADERS} <QApplication> <QComboBox> <QDialog> <QDialogButtonBox> <QKeyEvent> <QLabel>
                          <QLineEdit> <QMainWindow> <QPushButton>)

# quibra_library(NAME SOURCES... LINK ...)
#
# One folder's logic: a static library quibra_NAME that may use Qt6::Core and the folders it names behind LINK, nothing
# else. Headers are included by their path below src/, so the include root is shared; the link line is the wall, and
# tests/structure checks the includes against the order of the floors.
function(quibra_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(quibra_${name} STATIC ${ARG_SOURCES})
  target_include_directories(quibra_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_compile_definitions(quibra_${name} PUBLIC QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                                                   QT_NO_FOREACH)
  target_link_libraries(quibra_${name} PUBLIC Qt6::Core ${ARG_LINK})
  target_precompile_headers(quibra_${name} PRIVATE ${QUIBRA_LOGIC_HEADERS})
endfunction()

# quibra_windows(NAME SOURCES... LINK ...)
#
# One folder's windows: a static library quibra_NAME_windows over the folder's logic, quibra_ui and Qt6::Widgets. Each
# window is frm_name.h, .cpp and .ui.
function(quibra_windows name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(quibra_${name}_windows STATIC ${ARG_SOURCES})
  set_target_properties(quibra_${name}_windows PROPERTIES AUTOMOC ON AUTOUIC ON)
  target_link_libraries(quibra_${name}_windows PUBLIC quibra_${name} quibra_ui ${ARG_LINK})
  target_precompile_headers(quibra_${name}_windows REUSE_FROM quibra_ui)
endfunction()
