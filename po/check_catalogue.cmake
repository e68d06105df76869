# Extracts the current template and fails when the catalogue PO lacks a
# translation for any of its texts.
execute_process(COMMAND ${XGETTEXT} ${ARGS} --output=${POT} ${SOURCES}
  WORKING_DIRECTORY ${SOURCE_DIR} RESULT_VARIABLE extracted)
if(NOT extracted EQUAL 0)
  message(FATAL_ERROR "xgettext failed")
endif()
execute_process(COMMAND ${MSGCMP} ${PO} ${POT} RESULT_VARIABLE compared)
if(NOT compared EQUAL 0)
  message(FATAL_ERROR "${PO} is missing translations (see above)")
endif()
