#include "intake/formats/byte_source.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

#include "core/failure.h"
#include "intake/formats/survey_format.h"

namespace anomalis::intake {

namespace {

class PlainFile : public ByteSource {
  public:
    explicit PlainFile(const std::string& path, const FileStretch* stretch = nullptr) : path_(path) {
        // Not blocking: the open of a pipe without a writer would wait for ever.
        descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (descriptor_ < 0) throw FileFault(errno, path);
        struct stat status {};
        const int error = ::fstat(descriptor_, &status) != 0 ? errno : S_ISDIR(status.st_mode) ? EISDIR : 0;
        if (error == 0 && S_ISREG(status.st_mode)) {
            size_ = static_cast<std::size_t>(status.st_size);
            if (!stretch || take(*stretch)) return;
            const int seek_error = errno;
            ::close(descriptor_);
            throw FileFault(seek_error, path);
        }
        ::close(descriptor_);
        if (error != 0) throw FileFault(error, path);
        throw Fault("Not a regular file (" + path + ")");
    }
    ~PlainFile() override { ::close(descriptor_); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    std::size_t read(char* into, std::size_t most) override {
        const std::size_t wanted = std::min(most, size_ - used_);
        if (wanted == 0) return 0;
        ssize_t count = 0;
        do {
            count = ::read(descriptor_, into, wanted);
        } while (count < 0 && errno == EINTR);
        if (count < 0) throw FileFault(errno, path_);
        if (count == 0)
            throw Fault(path_ + " became shorter while it was read. Import it again when it is complete.");
        used_ += static_cast<std::size_t>(count);
        return static_cast<std::size_t>(count);
    }
    double bytes_read() const override { return static_cast<double>(used_); }
    std::int64_t text_begin() const override { return begin_; }

  private:
    bool take(const FileStretch& stretch) {
        begin_ = stretch.begin;
        size_ = static_cast<std::size_t>(std::max<std::int64_t>(stretch.end - stretch.begin, 0));
        return ::lseek(descriptor_, static_cast<off_t>(begin_), SEEK_SET) == static_cast<off_t>(begin_);
    }

    std::string path_;
    int descriptor_ = -1;
    std::int64_t begin_ = 0;
    std::size_t size_ = 0, used_ = 0;
};

constexpr std::size_t packed_piece = 65536;
constexpr int gzip_window = 15 + 16;  // zlib's mark for the header of gzip

class PackedFile : public ByteSource {
  public:
    explicit PackedFile(const std::string& path) : path_(path), file_(path), packed_(packed_piece) {
        if (::inflateInit2(&stream_, gzip_window) != Z_OK) throw Fault(FaultKind::out_of_memory);
    }
    ~PackedFile() override { ::inflateEnd(&stream_); }
    PackedFile(const PackedFile&) = delete;
    PackedFile& operator=(const PackedFile&) = delete;

    std::size_t read(char* into, std::size_t most) override {
        if (most == 0) return 0;
        stream_.next_out = reinterpret_cast<Bytef*>(into);
        stream_.avail_out = static_cast<uInt>(std::min<std::size_t>(most, 1U << 30));
        const uInt room = stream_.avail_out;
        while (stream_.avail_out == room && !ended_) step();
        unpacked_ += room - stream_.avail_out;
        return room - stream_.avail_out;
    }
    double bytes_read() const override { return file_.bytes_read(); }

  private:
    void step() {
        if (stream_.avail_in == 0) {
            stream_.next_in = packed_.data();
            stream_.avail_in =
                static_cast<uInt>(file_.read(reinterpret_cast<char*>(packed_.data()), packed_.size()));
            if (stream_.avail_in == 0) {
                // Between two members a file may end.
                if (!in_member_) return void(ended_ = true);
                broken("ends in the middle");
            }
        }
        if (!in_member_) {
            // Zeros behind the last member are padding of tapes.
            if (any_member_ && *stream_.next_in != 0x1f) return void(ended_ = true);
            if (any_member_ && ::inflateReset(&stream_) != Z_OK) broken("is broken");
            in_member_ = any_member_ = true;
        }
        const int state = ::inflate(&stream_, Z_NO_FLUSH);
        if (state == Z_STREAM_END) {
            in_member_ = false;
        } else if (state != Z_OK && state != Z_BUF_ERROR) {
            broken("is broken");
        }
    }
    [[noreturn]] void broken(const std::string& how) const {
        throw Fault(path_ + " " + how + ": what is packed in it cannot be read beyond byte " +
                    std::to_string(static_cast<long long>(file_.bytes_read()) - stream_.avail_in) + " (" +
                    std::to_string(unpacked_) + " bytes unpacked). Fetch or pack it again.");
    }

    std::string path_;
    PlainFile file_;
    std::vector<Bytef> packed_;
    z_stream stream_{};
    std::size_t unpacked_ = 0;
    bool in_member_ = false, any_member_ = false, ended_ = false;
};

}  // namespace

bool is_packed(const std::string& path) {
    PlainFile file(path);
    std::array<char, 2> head{};
    return file.read(head.data(), 1) == 1 && file.read(head.data() + 1, 1) == 1 && head[0] == '\x1f' &&
           head[1] == '\x8b';
}

std::unique_ptr<ByteSource> open_bytes(const std::string& path) {
    if (is_packed(path)) return std::make_unique<PackedFile>(path);
    return std::make_unique<PlainFile>(path);
}

std::unique_ptr<ByteSource> open_stretch(const std::string& path, const FileStretch& stretch) {
    return std::make_unique<PlainFile>(path, &stretch);
}

}  // namespace anomalis::intake
