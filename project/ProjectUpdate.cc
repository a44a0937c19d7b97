#include "project/ProjectUpdate.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <thread>

#include "mfc/CStringList.h"
#include "ohmutils/host/OhmLispBridge.h"
#include "project/AttributeTextEdit.h"
#include "project/HostSession.h"
#include "win/fs/FileReplace.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/dxf/DxfDrawingReader.h"

namespace {

namespace fs = std::filesystem;

bool IsDxf(const fs::path& file) {
  std::string extension = file.extension().string();
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension == ".dxf";
}

unsigned WorkerCount(const UpdateOptions& options, std::size_t drawings) {
  const unsigned wanted = options.workers ? options.workers : std::max(1u, std::thread::hardware_concurrency());
  return static_cast<unsigned>(std::min<std::size_t>(wanted, std::max<std::size_t>(drawings, 1)));
}

std::optional<std::string> ReadBytes(const std::string& file) {
  std::ifstream in(file, std::ios::binary | std::ios::ate);
  const std::streamoff size = in ? static_cast<std::streamoff>(in.tellg()) : -1;
  if (size < 0) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  in.seekg(0);
  if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) return std::nullopt;
  return bytes;
}

// The drawings of the project that `changes` touch, each with its edits.
std::map<std::size_t, std::vector<AttributeTextEdit>> EditsByDrawing(const std::vector<AttributeChange>& changes) {
  std::map<std::size_t, std::vector<AttributeTextEdit>> edits;
  for (const AttributeChange& change : changes) {
    edits[change.drawing].push_back({change.handle, std::u16string(change.tag), std::u16string(change.oldValue),
                                     std::u16string(change.newValue)});
  }
  return edits;
}

// Takes the locks of the drawings to write for as long as it lives; says which it had.
class DrawingLocks {
 public:
  explicit DrawingLocks(const std::vector<std::u16string>& paths) {
    CStringList files;
    for (const std::u16string& path : paths) files.AddTail(CString(path.c_str()));
    CStringList had;
    LispCheckFileLockStatusAndLock(files, true, false, had, true);
    for (POSITION pos = had.GetHeadPosition(); pos;) {
      mHad.AddTail(had.GetNext(pos));
      mNames.insert(std::u16string(mHad.GetTail().GetString()));
    }
  }
  ~DrawingLocks() {
    if (mHad.GetCount() != 0) LispUpdUnlockFiles(mHad, true);
  }
  DrawingLocks(const DrawingLocks&) = delete;
  DrawingLocks& operator=(const DrawingLocks&) = delete;

  bool had(const std::u16string& path) const { return mNames.count(path) != 0; }

 private:
  CStringList mHad;
  std::set<std::u16string> mNames;
};

// The drawing's new text with the edits made; empty and a problem when it can't be had.
std::string EditedDrawing(const DrawingComponents& drawing, const std::vector<AttributeTextEdit>& edits,
                          std::string& problem) {
  const std::optional<std::string> bytes = ReadBytes(drawing.file);
  if (!bytes) return problem = "can't read the drawing again to write it", std::string();
  EditedText edited = EditAttributeValues(*bytes, edits);
  if (!edited.problem.empty()) return problem = edited.problem + "; the drawing is left as it was", std::string();
  ZdDbDatabase check;
  if (readDxfDrawing(edited.text, check) != Zeda::eOk) {
    return problem = "the drawing would not read after the change; it is left as it was", std::string();
  }
  return std::move(edited.text);
}

void WriteChanges(const std::vector<DrawingComponents>& drawings, UpdatePlan& plan, std::vector<std::size_t>& written) {
  const auto edits = EditsByDrawing(plan.changes);
  if (edits.empty()) return;
  std::vector<std::u16string> paths;
  for (const auto& [index, unused] : edits) paths.push_back(drawings[index].path);
  HostSession session(paths.front());
  DrawingLocks locks(paths);
  for (const auto& [index, drawingEdits] : edits) {
    const DrawingComponents& drawing = drawings[index];
    if (!locks.had(drawing.path)) {
      plan.problems.push_back({index, 0, 0, "the drawing is locked by another process; it is left as it was"});
      continue;
    }
    std::string problem;
    const std::string text = EditedDrawing(drawing, drawingEdits, problem);
    if (problem.empty() && ReplaceFileContents(drawing.file, text) != 0) problem = "can't write the drawing";
    if (!problem.empty()) {
      plan.problems.push_back({index, 0, 0, problem});
      continue;
    }
    written.push_back(index);
  }
}

}  // namespace

ProjectDescription DescribeFolder(const std::string& folder) {
  std::error_code error;
  ProjectDescription project;
  project.root = folder;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (it->is_regular_file() && IsDxf(it->path())) project.drawings.push_back(it->path().string());
  }
  if (error) throw std::runtime_error(folder + ": can't list the folder (" + error.message() + ")");
  if (project.drawings.empty()) throw std::runtime_error(folder + ": the folder holds no DXF drawing");
  std::sort(project.drawings.begin(), project.drawings.end());
  return project;
}

std::vector<DrawingComponents> ReadProjectComponents(const ProjectDescription& project, const UpdateOptions& options) {
  std::vector<DrawingComponents> drawings(project.drawings.size());
  std::atomic<std::size_t> next{0};
  std::size_t done = 0;
  std::mutex progress;
  auto work = [&] {
    for (std::size_t i = next++; i < drawings.size(); i = next++) {
      drawings[i] = ReadDrawingComponents(project.drawings[i], project.conventions, options.recover);
      std::lock_guard lock(progress);
      ++done;
      if (options.progress) options.progress(done, drawings.size());
    }
  };
  std::vector<std::thread> workers;
  const unsigned count = WorkerCount(options, drawings.size());
  for (unsigned w = 1; w < count; ++w) workers.emplace_back(work);
  work();
  for (std::thread& worker : workers) worker.join();
  return drawings;
}

ProjectUpdateResult UpdateProject(const ProjectDescription& project, const UpdateOptions& options) {
  ProjectUpdateResult result;
  result.drawings = ReadProjectComponents(project, options);
  result.plan = PlanUpdate(result.drawings, project.settings, WorkerCount(options, result.drawings.size()));
  if (options.write) WriteChanges(result.drawings, result.plan, result.written);
  return result;
}
