target_sources(vorel_core_objects PRIVATE
  ${PROJECT_SOURCE_DIR}/entropy/code_sets_10bit.cpp
  ${PROJECT_SOURCE_DIR}/entropy/code_sets_8bit.cpp
)
