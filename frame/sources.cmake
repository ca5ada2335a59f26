target_sources(vorel_core_objects PRIVATE
  ${PROJECT_SOURCE_DIR}/frame/argument_check.cpp
  ${PROJECT_SOURCE_DIR}/frame/catalogue.cpp
  ${PROJECT_SOURCE_DIR}/frame/dispatch.cpp
  ${PROJECT_SOURCE_DIR}/frame/dispatch_entries.cpp
  ${PROJECT_SOURCE_DIR}/frame/frame_bounds.cpp
  ${PROJECT_SOURCE_DIR}/frame/frame_tags.cpp
  ${PROJECT_SOURCE_DIR}/frame/instruction_set.cpp
  ${PROJECT_SOURCE_DIR}/frame/tag_rules.cpp
)
