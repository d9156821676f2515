# The Python package as a user installs it: copied out of the tree (the build writes beside its
# sources), installed with pip into a virtual environment that sees Debian's NumPy and pytest,
# then its tests run there against the built library and the simulators.
set(source ${WORK_DIR}/python)
set(venv ${WORK_DIR}/venv)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
file(COPY ${PACKAGE_DIR}/ DESTINATION ${source} PATTERN tests EXCLUDE)

include(${CMAKE_CURRENT_LIST_DIR}/../support/RunChecked.cmake)

run(${PYTHON} -m venv --system-site-packages ${venv})
# No index: the build needs only Debian's setuptools, the package only Debian's NumPy.
run(${venv}/bin/python -m pip install --quiet --no-index --no-build-isolation ${source})
set(ENV{TELVARRA_LIBRARY} ${LIBRARY})
set(ENV{LD_LIBRARY_PATH} ${LIBRARY_DIR})
set(ENV{PYTHONDONTWRITEBYTECODE} 1)  # nothing written into the tree
# From the work folder, so that the package comes from the environment, not the tree.
run(${venv}/bin/python -m pytest -q -p no:cacheprovider ${PACKAGE_DIR}/tests
    WORKING_DIRECTORY ${WORK_DIR})
