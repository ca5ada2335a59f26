#include "bench/peers.h"

#include <cstdio>
#include <cstdlib>

#include "bench/peer.h"

namespace vorel::bench {
namespace {

const Peer* const kPeers[] = {
#ifdef VOREL_HAVE_QOI
    &kQoi,
#endif
#ifdef VOREL_HAVE_JPEG_XL
    &kJpegXl,
#endif
#ifdef VOREL_HAVE_JPEG_LS
    &kJpegLs,
#endif
#ifdef VOREL_HAVE_HTJ2K
    &kHtj2k,
#endif
#ifdef VOREL_HAVE_ZSTD
    &kZstd,
#endif
#ifdef VOREL_HAVE_LZ4
    &kLz4,
#endif
    &kPng,
};

// Pictures of a class as a peer gets them, with its files, each of which decodes to its source.
struct CodedPictures {
  std::vector<Samples> pictures;
  std::vector<CodedParts> files;
  std::size_t bytes = 0;
};

std::string KeyOf(const Peer& peer, const SampleClass& kind, const std::vector<const Sequence*>& sequences) {
  return std::string(peer.name) + '/' + kind.pixelName + '/' + std::to_string(sequences.size()) +
         sequences[0]->name;
}

CodedPictures CodeAll(const Peer& peer, const SampleClass& kind,
                      const std::vector<const Sequence*>& sequences) {
  CodedPictures coded;
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, kind.pixelName));
  coded.files.resize(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Item& item = items[i];
    const Sequence& sequence = *item.job->sequence;
    coded.pictures.push_back(ArrangeSamples(kind, sequence, PictureOf(item),
                                            static_cast<u32>(item.job->rowBytes),
                                            peer.arrangement(ShapeOf(kind, sequence))));
    const Samples& picture = coded.pictures.back();
    peer.encode(picture, coded.files[i], Results::kept);
    for (const CodedPart& part : coded.files[i]) coded.bytes += part.bytes;
    Samples copy = {picture.shape, Bytes(picture.bytes.size())};
    peer.decode(coded.files[i], copy, Results::kept);
    if (copy.bytes != picture.bytes) {
      std::fprintf(stderr, "vorel-bench: %s: a picture of %s does not come back\n", peer.name,
                   kind.pixelName);
      std::abort();
    }
  }
  return coded;
}

// Both directions of a peer follow each other, and share what was coded.
const CodedPictures& Coded(const Peer& peer, const SampleClass& kind,
                           const std::vector<const Sequence*>& sequences) {
  static CodedPictures coded;
  static std::string made;
  const std::string key = KeyOf(peer, kind, sequences);
  if (made != key) {
    coded = {};
    coded = CodeAll(peer, kind, sequences);
    made = key;
  }
  return coded;
}

void Encode(benchmark::State& state, Timings& timings, const Peer& peer, const SampleClass& kind,
            const std::vector<const Sequence*>& sequences) {
  const CodedPictures& coded = Coded(peer, kind, sequences);
  CodedParts file;
  Measure(state, ItemsOf(JobsOf(sequences, kind.pixelName)), coded.bytes, timings,
          [&](std::size_t i) { peer.encode(coded.pictures[i], file, Results::left); });
}

void Decode(benchmark::State& state, Timings& timings, const Peer& peer, const SampleClass& kind,
            const std::vector<const Sequence*>& sequences) {
  const CodedPictures& coded = Coded(peer, kind, sequences);
  Samples picture = {};
  Measure(state, ItemsOf(JobsOf(sequences, kind.pixelName)), coded.bytes, timings, [&](std::size_t i) {
    picture.shape = coded.pictures[i].shape;
    picture.bytes.resize(coded.pictures[i].bytes.size());
    peer.decode(coded.files[i], picture, Results::left);
    benchmark::DoNotOptimize(picture.bytes.data());
  });
}

}  // namespace

void RegisterPeers(const std::string& group, const std::vector<const Sequence*>& sequences) {
  for (const SampleClass& kind : kSampleClasses) {
    for (const Peer* peer : kPeers) {
      if (peer->arrangement(ShapeOf(kind, *sequences[0])) == Arrangement::none) continue;
      const std::string title = std::string(peer->name) + '/' + kind.pixelName + '/' + group;
      const auto add = [&](const char* operation, auto* run) {
        Register(operation + title, [=](benchmark::State& state, Timings& timings) {
          run(state, timings, *peer, kind, sequences);
        });
      };
      add("encode/", &Encode);
      add("decode/", &Decode);
    }
  }
}

std::string PeerVersions() {
  std::string versions;
  for (const Peer* peer : kPeers) versions += (versions.empty() ? "" : ", ") + peer->version();
  return versions;
}

}  // namespace vorel::bench
