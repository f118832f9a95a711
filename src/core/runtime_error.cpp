#include "core/runtime_error.h"

#include <cerrno>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString TextOf(int number) {
    switch (number) {
        case kErrorInvalidCall:
            return u"プロシージャの呼び出し、または引数が不正です。"_s;
        case kErrorOverflow:
            return u"オーバーフローしました。"_s;
        case kErrorOutOfMemory:
            return u"メモリが不足しています。"_s;
        case kErrorSubscript:
            return u"インデックスが有効範囲にありません。"_s;
        case kErrorTypeMismatch:
            return u"型が一致しません。"_s;
        case kErrorFileNotFound:
            return u"ファイルが見つかりません。"_s;
        case kErrorFileAlreadyOpen:
            return u"ファイルは既に開かれています。"_s;
        case kErrorDeviceIo:
            return u"デバイス I/O エラーです。"_s;
        case kErrorFileExists:
            return u"ファイルは既に存在します。"_s;
        case kErrorDiskFull:
            return u"ディスクの空き容量が不足しています。"_s;
        case kErrorPastEnd:
            return u"ファイルにこれ以上データがありません。"_s;
        case kErrorPermission:
            return u"書き込みできません。"_s;
        case kErrorPathAccess:
            return u"パス名が無効です。"_s;
        case kErrorPathNotFound:
            return u"パスが見つかりません。"_s;
        default:
            return u"実行時エラー %1 です。"_s.arg(number);
    }
}

}  // namespace

RuntimeError::RuntimeError(int number) : RuntimeError(number, TextOf(number)) {}

RuntimeError::RuntimeError(int number, QString text) : number_(number), text_(std::move(text)), utf8_(text_.toUtf8()) {}

RuntimeError RuntimeError::FromErrno(int error) {
    switch (error) {
        case ENOENT:
            return RuntimeError(kErrorFileNotFound);
        case EEXIST:
            return RuntimeError(kErrorFileExists);
        case ENOTDIR:
            return RuntimeError(kErrorPathNotFound);
        case EACCES:
        case EPERM:
        case EROFS:
            return RuntimeError(kErrorPermission);
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return RuntimeError(kErrorDiskFull);
        case EBUSY:
        case ETXTBSY:
            return RuntimeError(kErrorFileAlreadyOpen);
        case ENOMEM:
            return RuntimeError(kErrorOutOfMemory);
        case EISDIR:
        case ENAMETOOLONG:
        case EXDEV:
        case EINVAL:
        case ELOOP:
            return RuntimeError(kErrorPathAccess);
        default:
            return RuntimeError(kErrorDeviceIo);
    }
}

}  // namespace quibra
