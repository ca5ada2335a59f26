/* VorelVideo: perfect-fidelity intraframe video frames. This header is the whole public interface of the core
 * library.
 *
 * A frame is a 20-byte header and one bit stream; a picture is rows of pixels in one of forty layouts. Every
 * function here is a plain function on buffers that the caller owns: nothing is allocated, no state is kept
 * (tables of a frame format are made when it is first used), and any number of calls may run at once on different frames.
 *
 *   frame_codec.h      statuses, dispatch functions, the bounded decode, sizes, tags
 *   frame_routines.h   every frame routine under its own name
 *   pixel_formats.h    names, queries and geometry of pixel formats, comparison of pictures
 */
#ifndef VOREL_VOREL_H
#define VOREL_VOREL_H

#include "vorel/frame_codec.h"
#include "vorel/frame_routines.h"
#include "vorel/pixel_formats.h"

#endif
