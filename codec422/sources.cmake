target_sources(vorel_core_objects PRIVATE
  ${PROJECT_SOURCE_DIR}/codec422/pair_rebuild.cpp
  ${PROJECT_SOURCE_DIR}/codec422/pair_rebuild_left_only.cpp
  ${PROJECT_SOURCE_DIR}/codec422/reduced_rows.cpp
)
