# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Hears more files than one machine should, by Dask: `python -m tactus.cluster --help`.

Files are put into shards of about equal size. Dask hands each shard to a worker, which must be
able to open the files under the same paths, and takes the records back. A shard becomes one file of
JSON lines at once or not at all, so whatever dies, each input has exactly one record in the end.
"""
