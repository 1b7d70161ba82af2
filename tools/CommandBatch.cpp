// sentivo batch: judges many captures, one line each, on one handle per
// thread, in input order.
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include <unistd.h>

#include "BatchRecord.h"
#include "Commands.h"
#include "Progress.h"
#include "ToolOptions.h"
#include "sdk/SentivoSDKHandle.h"
#include "sentivo/sentivo.h"

namespace SentivoTool
{

const char* const kBatchHelp =
    "usage: sentivo batch [OPTIONS] SOURCE...\n"
    "\n"
    "Judges every capture of the sources and writes one line per capture, in\n"
    "input order whatever the number of threads. A SOURCE is a folder (every\n"
    "folder in it holding current.bmp, backlight.bmp and dark.bmp is a capture,\n"
    "labelled by the nearest enclosing folder named live or fake) or a manifest:\n"
    "a .csv file with the header current,backlight,dark[,label] or a .jsonl file\n"
    "with those keys, paths relative to the manifest.\n"
    "\n"
    "Fields: current, label, finger_code, message, score (empty or null where\n"
    "there is none), and with --features the 42 features. A capture that cannot\n"
    "be read gets a negative finger_code and the reason, naming the file.\n"
    "\n"
    "options:\n"
    "  --threads N           handles judging at once (default: the number of cores)\n"
    "  --format csv|jsonl    output format (default csv)\n"
    "  --output FILE         write to FILE instead of standard output\n"
    "  --features            add the 42 features\n"
    "  --resume              keep the lines already in --output FILE and skip\n"
    "                        their captures\n"
    "  --quiet               no progress bar (it is only drawn on a terminal)\n"
    "  --security-level N    nSecurityLevel: 1 strict (default), other relaxed\n"
    "  --no-movement         switch the movement test off\n"
    "\n"
    "Each capture is judged as a scanner sees a still finger: the second of two\n"
    "identical captures.\n"
    "Exit status: 0 when every capture was read and judged (whatever its code),\n"
    "1 when one could not be read, 64 for a usage error.\n";

namespace
{

struct BatchOptions
{
    unsigned nThreads = 1;
    EOutputFormat eFormat = EOutputFormat::eCsv;
    std::string output; // empty: standard output
    bool bFeatures = false;
    bool bResume = false;
    bool bQuiet = false;
    RunSettings settings;
};

BatchOptions ParseOptions(const CommandLine& line)
{
    BatchOptions options;
    options.nThreads =
        line.Has("--threads")
            ? static_cast<unsigned>(IntegerOption("--threads", line.Value("--threads"), 1, 1024))
            : AvailableCores();
    const std::string format = line.Value("--format", "csv");
    if (format != "csv" && format != "jsonl")
        throw UsageError("--format needs csv or jsonl, not '" + format + "'");
    options.eFormat = format == "csv" ? EOutputFormat::eCsv : EOutputFormat::eJsonl;
    if (line.Has("--output") && line.Value("--output").empty())
        throw UsageError("--output needs a file name");
    options.output = line.Value("--output");
    options.bFeatures = line.Has("--features");
    options.bResume = line.Has("--resume");
    if (options.bResume && options.output.empty())
        throw UsageError("--resume needs --output FILE");
    options.bQuiet = line.Has("--quiet");
    options.settings = JudgingSettings(line);
    return options;
}

// Opens the output. With --resume the whole lines already there stay (a line
// cut short by an interrupted run goes) and their captures are returned.
std::unique_ptr<std::FILE, int (*)(std::FILE*)>
OpenOutput(const BatchOptions& options, std::set<std::string>& done, bool& bHeader)
{
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
    bHeader = options.eFormat == EOutputFormat::eCsv;
    if (options.output.empty())
        return File(stdout, [](std::FILE*) { return 0; });
    std::error_code error;
    if (options.bResume && std::filesystem::exists(options.output, error))
    {
        const std::string text = ReadTextFile(options.output);
        const ResultFile file = ParseResults(options.output, text, true);
        const bool bBlank =
            text.substr(0, file.nWholeBytes).find_first_not_of(" \t\r\n") == std::string::npos;
        if (!bBlank)
        {
            const char* szWant = options.eFormat == EOutputFormat::eCsv ? "csv" : "jsonl";
            if (file.eFormat != options.eFormat)
                throw InputError(options.output + ": holds output of another format than " +
                                 szWant + "; resume with its own --format");
            if (file.bFeatures != options.bFeatures &&
                (file.eFormat == EOutputFormat::eCsv || !file.records.empty()))
                throw InputError(options.output + (file.bFeatures ? ": has" : ": lacks") +
                                 " the features; resume with the same --features choice");
            bHeader = false;
        }
        for (const BatchRecord& record : file.records)
            done.insert(record.current);
        std::filesystem::resize_file(options.output, bBlank ? 0 : file.nWholeBytes, error);
        if (error)
            throw InputError("cannot write " + options.output + ": " + error.message());
        File out(std::fopen(options.output.c_str(), "ab"), &std::fclose);
        if (!out)
            throw InputError("cannot write " + options.output);
        return out;
    }
    File out(std::fopen(options.output.c_str(), "wb"), &std::fclose);
    if (!out)
        throw InputError("cannot write " + options.output);
    return out;
}

// Judges the captures on nThreads handles and hands the lines to write in
// input order. Returns whether every capture was read and judged.
template <typename Write>
bool JudgeAll(const std::vector<const CaptureEntry*>& todo, const BatchOptions& options,
              Write&& write)
{
    struct Slot
    {
        std::string line;
        bool bRead = false;
        bool bDone = false;
    };
    const size_t nCount = todo.size();
    std::vector<Slot> slots(nCount);
    std::mutex mutex;
    std::condition_variable ready;
    std::atomic<size_t> nNext{0};
    std::atomic<size_t> nFinished{0};

    // Nothing may leave a worker: a capture that fails in an unforeseen way
    // (out of memory) gets a line of its own, or none when even that fails,
    // and counts as not judged.
    auto work = [&]()
    {
        std::unique_ptr<ClSentivoSDKHandle> pHandle;
        try
        {
            pHandle = std::make_unique<ClSentivoSDKHandle>();
        }
        catch (...)
        {
        }
        for (size_t i = nNext++; i < nCount; i = nNext++)
        {
            std::string text;
            bool bRead = false;
            try
            {
                JudgedCapture judged;
                judged.nCode = ZRC_ERROR_INTERNAL;
                judged.message = todo[i]->files.current + ": no handle to judge it";
                try
                {
                    if (pHandle)
                        judged = JudgeCapture(*pHandle, todo[i]->files, options.settings);
                }
                catch (const std::exception& e)
                {
                    judged = JudgedCapture();
                    judged.nCode = ZRC_ERROR_INTERNAL;
                    judged.message = todo[i]->files.current + ": " + e.what();
                }
                bRead = judged.bRead;
                text = FormatRecord(RecordOf(*todo[i], judged), options.eFormat, options.bFeatures);
            }
            catch (...)
            {
                text.clear();
                bRead = false;
            }
            {
                std::lock_guard<std::mutex> lock(mutex);
                slots[i].line = std::move(text);
                slots[i].bRead = bRead;
                slots[i].bDone = true;
            }
            ++nFinished;
            ready.notify_all();
        }
    };
    const size_t nThreads = std::min<size_t>(options.nThreads, nCount);
    std::vector<std::thread> threads;
    // Whatever leaves this function, the workers stop and are joined.
    struct Joiner
    {
        std::vector<std::thread>& threads;
        std::atomic<size_t>& nNext;
        size_t nCount;
        ~Joiner()
        {
            nNext = nCount;
            for (std::thread& thread : threads)
                thread.join();
        }
    } joiner{threads, nNext, nCount};
    for (size_t t = 0; t < nThreads; ++t)
        threads.emplace_back(work);

    Progress progress(nCount, !options.bQuiet && ::isatty(STDERR_FILENO) == 1);
    bool bAllRead = true;
    for (size_t i = 0; i < nCount; ++i)
    {
        std::string line;
        {
            std::unique_lock<std::mutex> lock(mutex);
            while (!slots[i].bDone)
            {
                lock.unlock();
                progress.Update(nFinished);
                lock.lock();
                ready.wait_for(lock, std::chrono::milliseconds(200));
            }
            line.swap(slots[i].line);
            bAllRead = bAllRead && slots[i].bRead;
        }
        write(line);
        progress.Update(nFinished);
    }
    progress.Finish();
    return bAllRead;
}

} // namespace

int CommandBatch(const Arguments& args)
{
    const CommandLine line(args, {{"--threads", true},
                                  {"--format", true},
                                  {"--output", true},
                                  {"--features", false},
                                  {"--resume", false},
                                  {"--quiet", false},
                                  kSecurityLevelOption,
                                  kNoMovementOption});
    if (line.Help())
    {
        std::fputs(kBatchHelp, stdout);
        return 0;
    }
    line.ExpectOperands(1, SIZE_MAX, "at least one SOURCE (a folder or a manifest)");
    const BatchOptions options = ParseOptions(line);
    const std::vector<CaptureEntry> entries = CollectCaptures(line.Operands());

    std::set<std::string> done;
    bool bHeader = false;
    auto out = OpenOutput(options, done, bHeader);
    const std::string name = options.output.empty() ? "standard output" : options.output;
    auto write = [&](const std::string& text)
    {
        if (std::fwrite(text.data(), 1, text.size(), out.get()) != text.size() ||
            std::fflush(out.get()) != 0)
            throw InputError("cannot write " + name);
    };
    if (bHeader)
        write(CsvHeader(options.bFeatures));

    std::vector<const CaptureEntry*> todo;
    for (const CaptureEntry& entry : entries)
        if (done.count(entry.files.current) == 0)
            todo.push_back(&entry);
    const bool bAllRead = JudgeAll(todo, options, write);
    if (!options.output.empty() && std::fclose(out.release()) != 0)
        throw InputError("cannot write " + name);
    return bAllRead ? 0 : 1;
}

} // namespace SentivoTool
