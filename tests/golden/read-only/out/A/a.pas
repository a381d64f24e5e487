var Q: TKVAQuery;
end.
