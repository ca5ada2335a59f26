target_sources(vorel_core_objects PRIVATE
  ${PROJECT_SOURCE_DIR}/pixel/compare.cpp
  ${PROJECT_SOURCE_DIR}/pixel/conversions_422_10bv.cpp
  ${PROJECT_SOURCE_DIR}/pixel/conversions_422_8bv.cpp
  ${PROJECT_SOURCE_DIR}/pixel/conversions_444_10bv.cpp
  ${PROJECT_SOURCE_DIR}/pixel/conversions_444_8bu.cpp
  ${PROJECT_SOURCE_DIR}/pixel/conversions_444_8bv.cpp
  ${PROJECT_SOURCE_DIR}/pixel/conversions_rgb10.cpp
  ${PROJECT_SOURCE_DIR}/pixel/conversions_rgb8.cpp
  ${PROJECT_SOURCE_DIR}/pixel/normalize.cpp
  ${PROJECT_SOURCE_DIR}/pixel/pixel_queries.cpp
  ${PROJECT_SOURCE_DIR}/pixel/raw_picture.cpp
)
