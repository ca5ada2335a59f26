// VOREL_INSTANTIATE_CONVERSIONS(layout) makes FillStrip for every encoder and DrainStrip for every decoder of a
// frame layout.
#pragma once
#include "pixel/conversion_stages.h"
#include "vorel/frame_members.inc"

#define VOREL_INSTANTIATE_FILL(K, LAYOUT, SCAN, PIXEL)                      \
  template void vorel::FillStrip<vorel::Samples##LAYOUT, vorel::Px##PIXEL>( \
      const u8*, StripPlace, const ColourWeights&, ChromaCarry&, SampleStrip&);
#define VOREL_INSTANTIATE_DRAIN(K, LAYOUT, SCAN, PIXEL)                      \
  template void vorel::DrainStrip<vorel::Samples##LAYOUT, vorel::Px##PIXEL>( \
      SampleStrip&, StripPlace, const ColourWeights&, ChromaCarry&, u8*);
#define VOREL_INSTANTIATE_CONVERSIONS(LAYOUT) \
  VOREL_ENCODERS_##LAYOUT(VOREL_INSTANTIATE_FILL, p) VOREL_DECODERS_##LAYOUT(VOREL_INSTANTIATE_DRAIN, p)
