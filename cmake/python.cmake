# What `cmake --install` lays down of the Python package: pure Python, the host's library of materials beside it, and the
# metadata that tell other packages its version.
set(TORNWALZEN_PYTHON_DIR lib/python3/dist-packages CACHE STRING
  "folder of the Python package below the prefix; the package finds the library from there")
install(DIRECTORY python/tornwalzen DESTINATION ${TORNWALZEN_PYTHON_DIR} COMPONENT python
  FILES_MATCHING PATTERN "*.py" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE PATTERN ".mypy_cache" EXCLUDE)
install(FILES app/materials/materials.json DESTINATION ${TORNWALZEN_PYTHON_DIR}/tornwalzen COMPONENT python)
configure_file(cmake/python_metadata.in ${CMAKE_BINARY_DIR}/python_metadata @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/python_metadata RENAME METADATA COMPONENT python
  DESTINATION ${TORNWALZEN_PYTHON_DIR}/tornwalzen-${PROJECT_VERSION}.dist-info)
install(DIRECTORY python/gallery DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/python3-tornwalzen/examples COMPONENT python
  FILES_MATCHING PATTERN "*.py" PATTERN "__pycache__" EXCLUDE)
install(FILES samples/square_cup.obj COMPONENT python   # which the gallery looks for there
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/python3-tornwalzen/samples)
