// Options that several commands share are added by one function each, so that they read the same everywhere.
#include "tool/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "tool/colour_standard.h"
#include "tool/commands.h"
#include "tool/file_kinds.h"
#include "tool/frame_format.h"
#include "tool/interruption.h"
#include "tool/settings_record.h"

namespace vorel::tool {

namespace {

using picture_io::ScanOrder;

constexpr u32 kMostThreads = 1024;

constexpr const char* kFooter =
    "Examples:\n"
    "  vorel encode brook.y4m               makes brook.mov\n"
    "  vorel decode brook.mov -o copy.y4m   gives the same pictures back\n"
    "  vorel verify brook.mov --against brook.y4m\n"
    "  vorel encode --pixel-format v210 --size 640x360 --rate 24000/1001 brook.raw\n"
    "  vorel encode --rate 25 shot.%05d.png          makes shot.mov of shot.00000.png and those that follow\n"
    "  vorel decode shot.mov -o copy.%05d.dpx        a file for each frame, from copy.00000.dpx on\n"
    "  vorel encode title.tif                        a clip of one frame\n"
    "\n"
    "\"-\" stands for stdin and stdout. Frames, rows and pixels are counted from 0.\n"
    "Exit status: 0 all is well, 1 a file could not be read, written or verified, 2 the command line is "
    "wrong.";

void AddInputs(CLI::App& command, std::vector<std::string>& inputs, const std::string& what) {
  command.add_option("INPUT", inputs, what)->required();
}

void AddThreads(CLI::App& command, u32& threads) {
  command.add_option("-j,--threads", threads, "Threads; 0, the default, for one on each processor")
      ->check(CLI::Range(u32{0}, kMostThreads))
      ->type_name("N");
}

void AddTarget(CLI::App& command, std::string& output, bool& force, const std::string& what) {
  command.add_option("-o,--output", output, what)->type_name("NAME");
  command.add_flag("-f,--force", force, "Overwrite files that exist");
}

// Options whose text is read by `read`, which returns false for what it can't take.
template <typename Read>
CLI::Option* AddRead(CLI::App& command, const std::string& name, const std::string& type,
                     const std::string& what, const std::string& wanted, Read read) {
  return command
      .add_option_function<std::string>(
          name,
          [name, wanted, read](const std::string& text) {
            if (!read(text)) throw CLI::ValidationError(name, "\"" + text + "\" is not " + wanted);
          },
          what)
      ->type_name(type);
}

bool ReadScanOrder(const std::string& text, std::optional<ScanOrder>& scan) {
  if (text == "progressive") scan = ScanOrder::progressive;
  if (text == "top-first") scan = ScanOrder::topFirst;
  if (text == "bottom-first") scan = ScanOrder::bottomFirst;
  if (text == "interlaced") scan = ScanOrder::interlaced;
  return scan.has_value() || text == "auto";
}

CLI::Option* AddPixelFormat(CLI::App& command, std::optional<u32>& pixelFormat, const std::string& what) {
  return AddRead(command, "--pixel-format", "CODE", what, "a pixel format: vorel formats lists them",
                 [&pixelFormat](const std::string& text) {
                   pixelFormat = PixelFormatOfName(text);
                   return pixelFormat.has_value();
                 });
}

void AddStart(CLI::App& command, std::optional<u64>& start, const std::string& what) {
  command.add_option("--start", start, what)
      ->check(CLI::Range(u64{0}, picture_io::kLargestSequenceNumber))
      ->type_name("N");
}

void AddSource(CLI::App& command, SourceOptions& source) {
  CLI::Option* const pixelFormat = AddPixelFormat(
      command, source.pixelFormat,
      "The pictures are raw, in this pixel format; vorel formats lists them. Rows follow each other without "
      "gaps, but for v210, where they are filled up to whole blocks of 48 pixels in 128 bytes");
  CLI::Option* const size = AddRead(
      command, "--size", "WxH", "Width and height of raw pictures, in pixels",
      "a size such as 640x360, with sides from 1 to 32767",
      [&source](const std::string& text) { return picture_io::ReadSize(text, source.width, source.height); });
  pixelFormat->needs(size);
  size->needs(pixelFormat);
  AddRead(
      command, "--rate", "R",
      "Frames per second: 25, 24000/1001, 23.976; replaces what a header says. Sequences and stills whose "
      "files say nothing of it have 24",
      "a frame rate such as 25, 24000/1001 or 23.976", [&source](const std::string& text) {
        picture_io::Ratio rate;
        if (!picture_io::ReadRate(text, rate)) return false;
        source.rate = rate;
        return true;
      });
  AddRead(
      command, "--scan", "SCAN",
      "auto, the default: what a header says, and progressive for raw pictures and for picture files that "
      "say "
      "nothing; progressive; top-first or "
      "bottom-first, for interlaced pictures by their first field; interlaced, where the order of fields is "
      "as the header says, or not known",
      "one of auto, progressive, interlaced, top-first and bottom-first",
      [&source](const std::string& text) { return ReadScanOrder(text, source.scan); });
  AddStart(
      command, source.start,
      "Number of a sequence's first picture; otherwise the lowest that there is. The clip goes on to the "
      "highest, and none may be missing");
}

void AddCoding(CLI::App& command, EncodeOptions& encode) {
  AddRead(command, "--codec", "CODEC",
          "The frame format: " + CodecNames() +
              "; auto, the default, goes by the pixel format. Or generic: as auto, in a movie whose "
              "compression type stands for all frame formats",
          "one of " + CodecNames() + ", generic", [&encode](const std::string& text) {
            encode.isGeneric = text == "generic";
            if (encode.isGeneric) encode.family = VOREL_GENERIC;
            return encode.isGeneric || ReadCodec(text, encode.family);
          });
  command.add_flag("--self-check", encode.selfCheck,
                   "Decode every frame again and compare it with its picture before it is written");
  command
      .add_option(
          "--settings", encode.settings,
          "A settings record (vorel settings -o) for what no option says: self-check, scan, conversion, "
          "colour standard, range of raw 32-bit R'G'B'")
      ->type_name("FILE");
  AddRead(command, "--alpha", "ALPHA",
          "keep, the default, or drop: whether alpha is coded where the pixel format has a place for it",
          "one of keep and drop", [&encode](const std::string& text) {
            encode.keepAlpha = text == "keep";
            return encode.keepAlpha || text == "drop";
          });
  AddRead(
      command, "--conversion", "CONVERSION",
      "any, the default: what frames don't hold of pictures is said in a note; or perfect: such pictures are "
      "refused, by their pixel format, before anything is written",
      "one of any and perfect", [&encode](const std::string& text) {
        encode.conversion = text == "perfect" ? Conversion::perfect : Conversion::any;
        return text == "any" || text == "perfect";
      });
  AddRead(
      command, "--standard", "STANDARD",
      "The colour standard that the movie tells and that R'G'B' is converted by: ntsc, pal, hd, hd1035 or "
      "unknown; otherwise hd from 720 rows on, ntsc below",
      "one of ntsc, pal, hd, hd1035 and unknown", [&encode](const std::string& text) {
        u32 standard = 0;
        if (!ReadStandard(text, standard)) return false;
        encode.colourStandard = standard;
        return true;
      });
}

void AddFormat(CLI::App& command, std::optional<PictureFile>& format) {
  AddRead(
      command, "--format", "FORMAT",
      PictureFileNames() +
          ": y4m and raw are one file, the others one for each frame, dpx-le with the lower byte first. "
          "Otherwise the name after -o tells: .y4m; raw for .yuv, .raw and the name of a pixel format; .png, "
          ".tif, .tiff, .dpx; else y4m, or raw with --pixel-format",
      "one of " + PictureFileNames(), [&format](const std::string& text) {
        format = PictureFileOfName(text);
        return format.has_value();
      });
}

struct CommandLine {
  EncodeOptions encode;
  DecodeOptions decode;
  VerifyOptions verify;
  TranscodeOptions transcode;
  SettingsOptions settings;
  InfoOptions info;
  FormatsOptions formats;
  bool quiet = false;
  bool verbose = false;
};

CLI::App* AddEncode(CLI::App& app, CommandLine& line) {
  CLI::App* const command = app.add_subcommand("encode", "Encode pictures to movies, without loss");
  AddInputs(
      *command, line.encode.inputs,
      "YUV4MPEG2 files, 4:2:2 or 4:4:4 with 8 or 10 bits; raw pictures; PNG, TIFF and 10-bit DPX pictures, "
      "single ones or a sequence such as shot.%05d.png");
  AddTarget(*command, line.encode.output, line.encode.force,
            "The movie; otherwise named after the input, with .mov: shot.mov for shot.%05d.png, and shot.mov "
            "for shot/%05d.png");
  AddSource(*command, line.encode.source);
  AddCoding(*command, line.encode);
  AddThreads(*command, line.encode.threads);
  command->footer(
      "The movie's date is the present, or SOURCE_DATE_EPOCH (seconds since 1970) if that is set.");
  return command;
}

CLI::App* AddDecode(CLI::App& app, CommandLine& line) {
  CLI::App* const command = app.add_subcommand("decode", "Decode movies to pictures");
  AddInputs(*command, line.decode.inputs, "Movies");
  AddTarget(
      *command, line.decode.output, line.decode.force,
      "The pictures: a file, or a pattern for one file each, such as shot.%05d.png, whose numbers go from "
      "0 or --start; the name of one picture takes a movie of one frame. Otherwise named after the input, "
      "with .y4m, .yuv, .raw for --pixel-format, or .%05d.png and its like for --format png");
  AddFormat(*command, line.decode.format);
  AddPixelFormat(
      *command, line.decode.pixelFormat,
      "The pixel format of the pictures; otherwise the one that the frames hold: 2vuy for 8 bits, "
      "v210 for 10 bits, yuvu for 8bw. Of YUV4MPEG2, 2vuy, yuvu and v408 are 8 bits, v216 and v410 are 10. "
      "PNG and TIFF hold 24, RGBA, b48r and b64a, DPX F10k; of these the nearest to the frames is taken");
  AddStart(*command, line.decode.start, "Number of the first picture of a sequence; otherwise 0");
  AddThreads(*command, line.decode.threads);
  return command;
}

CLI::App* AddVerify(CLI::App& app, CommandLine& line) {
  CLI::App* const command =
      app.add_subcommand("verify", "Decode every frame of movies and check that all is well");
  AddInputs(*command, line.verify.inputs, "Movies");
  command
      ->add_option("--against", line.verify.against,
                   "Compare every sample with these pictures: a file or a sequence, as for encode")
      ->type_name("NAME");
  AddSource(*command, line.verify.source);
  AddThreads(*command, line.verify.threads);
  return command;
}

CLI::App* AddTranscode(CLI::App& app, CommandLine& line) {
  CLI::App* const command = app.add_subcommand(
      "transcode", "Turn movies of uncompressed video into VorelVideo, with sound and all");
  AddInputs(*command, line.transcode.inputs,
            "Movies of v210, v216, Y216, 2vuy, yuvs, yuv2, v408, r408 or v410 video");
  AddTarget(*command, line.transcode.output, line.transcode.force,
            "The movie; otherwise named after the input: a.vorel.mov for a.mov");
  command->add_flag("--generic", line.transcode.isGeneric,
                    "Give the movie the compression type that stands for all frame formats");
  command->add_flag("--self-check", line.transcode.selfCheck,
                    "Decode every frame again and compare it with its sample before it is written");
  AddThreads(*command, line.transcode.threads);
  command->footer(
      "All frames come out in the interlaced frame format, whatever the movie says of its fields, but for "
      "v408 "
      "and r408, which come out progressive: the format tells how rows are predicted, and every picture "
      "comes "
      "back as it was. What the movie says of its fields is kept.");
  return command;
}

CLI::App* AddSettings(CLI::App& app, CommandLine& line) {
  CLI::App* const command =
      app.add_subcommand("settings", "Show a compressor's settings, change them, keep them in a file");
  command->add_option("--codec", line.settings.codec, "Whose settings: " + CodecNames())->type_name("CODEC");
  command->add_option("--settings", line.settings.record, "Begin with the record in a file")
      ->type_name("FILE");
  command->add_option("--set", line.settings.values, "Set a value: " + SettingTexts())
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  command->add_flag("--dialog", line.settings.dialog, "Run the compressor's dialog in the terminal");
  AddTarget(*command, line.settings.output, line.settings.force,
            "Write the settings as a record, for vorel encode --settings");
  return command;
}

CLI::App* AddInfo(CLI::App& app, CommandLine& line) {
  CLI::App* const command = app.add_subcommand("info", "Say what is in movies");
  AddInputs(*command, line.info.inputs, "Movies");
  command->add_flag("--json", line.info.json, "As JSON: an object, or an array of them for several movies");
  return command;
}

CLI::App* AddFormats(CLI::App& app, CommandLine& line) {
  CLI::App* const command =
      app.add_subcommand("formats", "List the formats of pictures and frames, and what goes into what");
  command->add_flag(
      "--matrix", line.formats.matrix,
      "The table of pixel formats and frame formats: what is encoded from what, and decoded to what");
  command->add_flag("--json", line.formats.json,
                    "As JSON: an object with the arrays pixelFormats, frameFormats and pairs");
  command->footer(
      "bytes: of a pixel, or of as many pixels as a unit has; rows hold whole units. Rows of raw files "
      "follow "
      "each other without gaps, but for v210, where they are filled up with zeros to whole blocks of 48 "
      "pixels "
      "in 128 bytes.\n"
      "depth: bits of a sample; 5 stands for fields of 5 and 6 bits.\n"
      "range: which numbers are black and white. full: all; video: 16 and 235 at 8 bits.\n"
      "layout: LE and BE are little-endian and big-endian words, which are told from the highest bit.\n"
      "L555 and L565 are only written, all others read and written.");
  return command;
}

int ExitStatus(bool isGood) {
  return isGood ? kExitGood : kExitBadData;
}

}  // namespace

int RunCommandLine(int count, char** arguments) {
  CommandLine line;
  CLI::App app("Lossless intraframe video: pictures to QuickTime movies and back, bit for bit.", "vorel");
  app.set_version_flag("--version", "vorel " VOREL_VERSION);
  app.require_subcommand(1);
  app.footer(kFooter);
  const CLI::App* const encode = AddEncode(app, line);
  const CLI::App* const decode = AddDecode(app, line);
  const CLI::App* const verify = AddVerify(app, line);
  const CLI::App* const transcode = AddTranscode(app, line);
  const CLI::App* const settings = AddSettings(app, line);
  const CLI::App* const info = AddInfo(app, line);
  const CLI::App* const formats = AddFormats(app, line);
  for (CLI::App* const command : app.get_subcommands({})) {
    command->add_flag("-q,--quiet", line.quiet, "Say nothing but what is wrong");
  }
  for (const char* const name : {"encode", "decode", "verify", "transcode"}) {
    CLI::App* const command = app.get_subcommand(name);
    command->add_flag("-v,--verbose", line.verbose, "Say what the run took, and what held it up")
        ->excludes(command->get_option("--quiet"));
  }
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitGood : kExitBadUsage;
  }
  CatchInterruptions();
  Console console = OpenConsole(line.quiet, line.verbose);
  try {
    if (encode->parsed()) return ExitStatus(RunEncode(line.encode, console));
    if (decode->parsed()) return ExitStatus(RunDecode(line.decode, console));
    if (verify->parsed()) return ExitStatus(RunVerify(line.verify, console));
    if (transcode->parsed()) return ExitStatus(RunTranscode(line.transcode, console));
    if (settings->parsed()) return ExitStatus(RunSettings(line.settings, console));
    if (info->parsed()) return ExitStatus(RunInfo(line.info, console));
    if (formats->parsed()) return ExitStatus(RunFormats(line.formats, console));
  } catch (const UsageError& error) {
    Report(console, {error.text, "", "see vorel --help"});
  }
  return kExitBadUsage;
}

}  // namespace vorel::tool
