object F: TF
    object U: TKVAUpdateSQL
  end
end
